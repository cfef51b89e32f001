#include "BusTest.h"
#include "Lines.h"
#include "PlayKinds.h"
#include "Suite.h"

#include <limits>

using namespace Lines;
using namespace Qt::StringLiterals;

// A message from its line to the sound manager and back. The clock stands at 08:29:49 when the daemon starts: the first
// far pass, three seconds later, finds what is due at 08:30:00 early.
class Message : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void IsRequestedAheadOfItsTimeAndOnce();
    void AnAnswerOfAnotherTypeIsConverted();
    void ACompletionBeforeTheReplyIsAnothers();
    void AStopMessageStopsAtItsSecond();
};

namespace
{

constexpr const char* PLAY_FILE = "sound.PlayFile";
constexpr const char* PLAY_FILE_COMPLETED = "sound.PlayFileCompleted";

const PlayKind& MESSAGE = PLAY_KINDS[0];

} // namespace

void Message::IsRequestedAheadOfItsTimeAndOnce()
{
    const Request volume = Request::Find("SetPlayerVolume(file)", "gong.mp3,70");
    const Request play = volume.Followed();
    const QString requested = Shown(play.Records(Outcome::ACCEPTED), 9).last();
    WriteSchedule(Due(volume));
    QVERIFY(StartAndTakeLog());
    QVERIFY(Device().WaitForCalls(2));
    const QTime asked = Time().Now().time();
    QVERIFY2(asked >= QTime(8, 29, 52) && asked < QTime(8, 30), qPrintable(asked.toString()));
    COMPARE_LINES(Device().Calls(), {volume.Call(), play.Call()});
    QVERIFY(Daemon().WaitForLog(requested));
    COMPARE_LINES(Daemon().Take().mid(6), {u"5 [Action.cpp] Task PlayMessage IsEarly: active in <12 seconds"_s,
                                           u"4 [Scheduler.cpp] EARLY action found: 1 (PlayMessage)"_s,
                                           u"5 [Action.cpp] Task PlayMessage IsReady (in time)"_s,
                                           u"4 [Scheduler.cpp] READY action found: 1 (PlayMessage)"_s,
                                           u"5 [Action.cpp] Action 'PlayMessage' delay: 0 s (0=no-delay)"_s,
                                           u"9 [Action.cpp] Task PlayMessage is starting !"_s, requested});

    // Past its time and after its end, until the next far pass has looked at it, nothing more is sent.
    Device().Emit(PLAY_FILE_COMPLETED, {u"gong.mp3"_s});
    QVERIFY(Daemon().WaitForLog(play.Ended().first()));
    Time().Set(MONDAY, {8, 30, 3});
    static_cast<void>(Daemon().Take());
    QVERIFY(Daemon().WaitForLog(u"9 [Scheduler.cpp] > FarActions:     1"_s));
    COMPARE_LINES(Daemon().Take(5), QStringList());
    QCOMPARE(Device().Calls().size(), 2);
}

// As many messages as there are answers.
void Message::AnAnswerOfAnotherTypeIsConverted()
{
    constexpr int SMALLEST = std::numeric_limits<int>::min();
    struct Answer
    {
        QVariantList values;
        int status;
    };
    const QList<Answer> answers{
        {{3}, 3},
        {{-1}, -1},
        {{SMALLEST}, SMALLEST},
        {{}, 0},
        {{u"ok"_s}, 0},
        {{u"7"_s}, 7},
        {{7U}, 7},
        {{true}, 1},
        {{false}, 0},
        {{QStringList{u"7"_s}}, 0},
        {{QVariantMap{{u"status"_s, 7}}}, 0},
        {{7, u"more"_s, 1.5}, 7},
        {{0, 7}, 0},
        {{1e300}, std::numeric_limits<int>::max()},
    };
    QStringList expected;
    for (const Answer& answer : answers)
    {
        Device().AnswerValues(PLAY_FILE, answer.values, 0, 1);
        const Outcome outcome = answer.status == 0 ? Outcome::ACCEPTED : Outcome::REFUSED;
        expected += Shown(Answered(MESSAGE.Start().Records(outcome), {}, answer.status), 9);
    }
    WriteSchedule(Due(MESSAGE.Start()).repeated(answers.size()));
    // One pass finds all of them early, and none again.
    Time().Set(MONDAY, {8, 29, 54});
    QVERIFY(StartAndTakeLog());
    QVERIFY(Device().WaitForCalls(answers.size()));
    // The daemon answers a call only when the request before it has been answered.
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    COMPARE_LINES(TakeTaskLines(), expected);
}

void Message::ACompletionBeforeTheReplyIsAnothers()
{
    Device().AnswerStatus(PLAY_FILE, 0, 1000, 1);
    WriteSchedule(Due(MESSAGE.Start()));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    static_cast<void>(Daemon().Take());
    Device().Emit(PLAY_FILE_COMPLETED, {u"gong.mp3"_s});
    QVERIFY(Daemon().WaitForLog(Shown(MESSAGE.Start().Records(Outcome::ACCEPTED), 9).last()));
    // The message goes on, and is stopped with its action.
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended(Shown(MESSAGE.Stop().Records(Outcome::ACCEPTED), 4)));
    COMPARE_LINES(Device().Calls(), {MESSAGE.Start().Call(), MESSAGE.Stop().Call()});
}

void Message::AStopMessageStopsAtItsSecond()
{
    const Request stop = Request::Find("StopPlay(file)", nullptr);
    const QString requested = Shown(stop.Records(Outcome::ACCEPTED), 9).last();
    Time().Set(MONDAY, {8, 29, 52});
    WriteSchedule(Due(stop));
    QVERIFY(StartAndTakeLog());
    QVERIFY(Daemon().WaitForLog(requested));
    const QTime now = Time().Now().time();
    QVERIFY2(now >= QTime(8, 30) && now < QTime(8, 30, 1), qPrintable(now.toString(Qt::ISODateWithMs)));
    COMPARE_LINES(Device().Calls(), {stop.Call()});
    QStringList lines = Daemon().Take();
    lines.removeIf([](const QString& line) {
        return line.contains(u"Actions:  "_s) || line.contains(u"-----"_s) || line.contains(u"Checking"_s) ||
               line.contains(u"TOTAL"_s);
    });
    COMPARE_LINES(lines, {u"5 [Action.cpp] Task StopMessage IsEarly: active in <12 seconds"_s,
                          u"4 [Scheduler.cpp] EARLY action found: 14 (StopMessage)"_s,
                          u"5 [Action.cpp] Task StopMessage IsReady (in time)"_s,
                          u"4 [Scheduler.cpp] READY action found: 14 (StopMessage)"_s,
                          u"5 [Action.cpp] Action 'StopMessage' delay: 0 s (0=no-delay)"_s,
                          u"9 [Action.cpp] Task StopMessage is starting !"_s, requested});
}

OZNA_CASE(Message, Message)
#include "tst_Message.moc"
