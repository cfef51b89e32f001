#include "MessageTest.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// A message from its line to the sound manager and back.
class Message : public MessageTest
{
    Q_OBJECT

private Q_SLOTS:
    void IsRequestedAheadOfItsTimeAndOnce();
    void OnlyAVolumeThatIsGivenIsSet_data();
    void OnlyAVolumeThatIsGivenIsSet();
    void WhateverTheVolumeRequestBringsTheMessageIsRequested_data();
    void WhateverTheVolumeRequestBringsTheMessageIsRequested();
    void AStopMessageStopsAtItsSecond();
    void AStopMessageThatIsRefusedIsLogged();
};

namespace
{
const QString COMPLETED = u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: gong.mp3"_s;
}

void Message::IsRequestedAheadOfItsTimeAndOnce()
{
    WriteSchedule(MessageLine("gong.mp3,70"));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QVERIFY(Device().WaitForCalls(2));
    const QTime requested = Time().Now().time();
    QVERIFY2(requested >= QTime(8, 29, 52) && requested < QTime(8, 30), qPrintable(requested.toString()));
    COMPARE_LINES(Device().Calls(), {u"sound.SetPlayerVolume sd file 70"_s, PLAY});
    QVERIFY(Daemon().WaitForLog(Requested(70)));
    COMPARE_LINES(Daemon().Take().mid(6),
                  QStringList{u"5 [Action.cpp] Task PlayMessage IsEarly: active in <12 seconds"_s} + EARLY +
                      QStringList{u"5 [Action.cpp] Task PlayMessage IsReady (in time)"_s} + READY_MESSAGE +
                      QStringList{u"5 [Action.cpp] Action 'PlayMessage' delay: 0 s (0=no-delay)"_s,
                                  u"9 [Action.cpp] Task PlayMessage is starting !"_s, Requested(70)});

    // Past its time and after its end, until the next far pass has looked at it, nothing more is sent.
    Device().Emit(PLAY_FILE_COMPLETED, {u"gong.mp3"_s});
    QVERIFY(Daemon().WaitForLog(COMPLETED));
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 30, 3), Qt::UTC));
    static_cast<void>(Daemon().Take());
    QVERIFY(Daemon().WaitForLog(u"9 [Scheduler.cpp] > FarActions:     1"_s));
    COMPARE_LINES(Daemon().Take(5), QStringList());
    QCOMPARE(Device().Calls().size(), 2);
}

void Message::OnlyAVolumeThatIsGivenIsSet_data()
{
    QTest::addColumn<QByteArray>("parameters");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("warnings");
    const QString volume = u"sound.SetPlayerVolume sd file "_s;
    QTest::newRow("none") << QByteArray("gong.mp3") << QStringList{PLAY} << QStringList();
    QTest::newRow("zero is set") << QByteArray("gong.mp3,0") << QStringList{volume + u'0', PLAY} << QStringList();
    QTest::newRow("a negative one is not") << QByteArray("gong.mp3,-1") << QStringList{PLAY} << QStringList();
    QTest::newRow("a word is not") << QByteArray("gong.mp3,loud") << QStringList{PLAY}
                                   << QStringList{u"2 [tasks/PlayMessage.cpp] Invalid volume=loud, not used"_s};
    QTest::newRow("a large one is sent unchanged")
        << QByteArray("gong.mp3,1000000") << QStringList{volume + u"1e+06"_s, PLAY} << QStringList();
}

void Message::OnlyAVolumeThatIsGivenIsSet()
{
    QFETCH(QByteArray, parameters);
    QFETCH(QStringList, calls);
    QFETCH(QStringList, warnings);
    WriteSchedule(MessageLine(parameters.constData()));
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(2), warnings);
    QVERIFY(Device().WaitForCalls(calls.size()));
    COMPARE_LINES(Device().Calls(), calls);
}

void Message::WhateverTheVolumeRequestBringsTheMessageIsRequested_data()
{
    QTest::addColumn<QString>("answer");
    QTest::newRow("refused") << u"status"_s;
    QTest::newRow("failed on the bus") << u"error"_s;
    QTest::newRow("never answered") << u"never"_s;
}

void Message::WhateverTheVolumeRequestBringsTheMessageIsRequested()
{
    QFETCH(QString, answer);
    if (answer == u"status"_s)
        Device().AnswerStatus("sound.SetPlayerVolume", 4);
    else if (answer == u"error"_s)
        Device().AnswerError("sound.SetPlayerVolume", "no such volume");
    else
        Device().AnswerNever("sound.SetPlayerVolume");
    WriteSchedule(MessageLine("gong.mp3,70"));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(2));
    QCOMPARE(Device().Calls().last(), PLAY);
    QVERIFY(Daemon().WaitForLog(Requested(70)));
}

void Message::AStopMessageStopsAtItsSecond()
{
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 52), Qt::UTC));
    WriteSchedule("1111111|08:30:00|*|*|*|||StopMessage\n");
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    const QString requested = u"9 [tasks/StopMessage.cpp] TASK REQUESTED | StopPlay(file)"_s;
    QVERIFY(Daemon().WaitForLog(requested));
    const QTime now = Time().Now().time();
    QVERIFY2(now >= QTime(8, 30) && now < QTime(8, 30, 1), qPrintable(now.toString(Qt::ISODateWithMs)));
    COMPARE_LINES(Device().Calls(), {STOP});
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

void Message::AStopMessageThatIsRefusedIsLogged()
{
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 52), Qt::UTC));
    Device().AnswerStatus(STOP_PLAY, 5);
    WriteSchedule("1111111|08:30:00|*|*|*|||StopMessage\n");
    QVERIFY(StartDaemon());
    const QString error = u"1 [tasks/StopMessage.cpp] StopPlay(file) error: 5"_s;
    QVERIFY(Daemon().WaitForLog(error));
    COMPARE_LINES(Daemon().Take(2), {error});
}

OZNA_CASE(Message, Message)
#include "tst_Message.moc"
