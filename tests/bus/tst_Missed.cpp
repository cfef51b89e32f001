#include "BusTest.h"
#include "Suite.h"

#include <csignal>

using namespace Qt::StringLiterals;

// Why a start was missed, told by the running process. The clock stands at 08:29:49 when the daemon starts: its far
// passes come at 08:29:52, :55 and so on.
class Missed : public BusTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALoadRightBefore();
    void AReloadThatStopsAMessage();
    void TheClockIsPutForward();
    void TheClockIsPutForwardOverMany();
    void TheProcessIsStopped();
    void APeerDoesNotAnswer();
    void AMessageStillPlays();
    void MidnightCannotStart();

private:
    // Waits for the record of a missed start, and for none besides up to that pass.
    void Expect(const QStringList& missed);
};

namespace
{

const QString VOLUME_EARLY = u"4 [Scheduler.cpp] EARLY action found: 5 (Volume)"_s;

QString Record(const char* task, int line, const char* due, const char* cause)
{
    return u"2 [MissedStarts.cpp] MISSED action: %1, line %2, due at %3: %4"_s.arg(QLatin1String(task))
        .arg(line)
        .arg(QLatin1String(due), QLatin1String(cause));
}

} // namespace

void Missed::Expect(const QStringList& missed)
{
    // Told once: the next pass has nothing to add.
    QVERIFY(Daemon().WaitForLog(missed.last()));
    QVERIFY(WaitForPasses());
    COMPARE_LINES(Daemon().Take(2).filter(u"MISSED"_s), missed);
}

void Missed::ALoadRightBefore()
{
    WriteSchedule("1111111|08:29:51|*|*|*|||Volume|1\n1111111|08:29:48|*|*|*|||Volume|2\n");
    QVERIFY(StartDaemon());
    Expect({Record("5 (Volume)", 1, "08:29:51", "the schedule was loaded less than 3 s before")});
    COMPARE_LINES(Device().Calls(), {});
}

void Missed::AReloadThatStopsAMessage()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n");
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    Time().Set(MONDAY, {8, 29, 58});
    QCOMPARE(Client().Call("Reload"), u"0"_s);
    Expect({Record("1 (PlayMessage)", 1, "08:30:00", "the schedule was loaded less than 3 s before")});
    COMPARE_LINES(Device().Calls(), {u"sound.PlayFile ss gong.mp3 08:30:00"_s, u"sound.StopPlay ss file "_s});
}

void Missed::TheClockIsPutForward()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||Volume|1\n1111111|08:40:00|*|*|*|||Volume|2\n"
                  "0111111|08:40:00|*|*|*|||Volume|3\n");
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().WaitForLog(VOLUME_EARLY));
    Time().Set(MONDAY, {9, 0});
    Expect({Record("5 (Volume)", 1, "08:30:00", "the clock was put forward"),
            Record("5 (Volume)", 2, "08:40:00", "the clock was put forward")});
    COMPARE_LINES(Device().Calls(), {});
}

void Missed::TheClockIsPutForwardOverMany()
{
    WriteSchedule("1111111|08:00:00|*|*|*|||Volume|1\n1111111|09:00:00|*|*|*|||Volume|2\n");
    QVERIFY(StartDaemon());
    QVERIFY(WaitForPasses());
    Time().Set(MONDAY.addDays(20), {8, 29});
    QStringList missed;
    for (int day = 11; day <= 20; ++day)
    {
        const QByteArray date = MONDAY.addDays(day).toString(u"yyyy-MM-dd"_s).toLatin1();
        const QByteArray before = MONDAY.addDays(day - 1).toString(u"yyyy-MM-dd"_s).toLatin1();
        missed += Record("5 (Volume)", 2, (before + " 09:00:00").constData(), "the clock was put forward");
        missed += Record("5 (Volume)", 1, (day == 20 ? QByteArray("08:00:00") : date + " 08:00:00").constData(),
                         "the clock was put forward");
    }
    // 40 starts lie in between.
    missed += u"2 [MissedStarts.cpp] MISSED actions: 20 others before these"_s;
    Expect(missed);
}

void Missed::TheProcessIsStopped()
{
    WriteSchedule("1111111|08:29:59|*|*|*|||Volume|1\n");
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().WaitForLog(VOLUME_EARLY));
    Daemon().Signal(SIGSTOP);
    QVERIFY(WaitUntil([this] { return Time().Now() > At(MONDAY, {8, 30, 3}); }));
    Daemon().Signal(SIGCONT);
    Expect({Record("5 (Volume)", 1, "08:29:59", "the process stood still")});
    COMPARE_LINES(Device().Calls(), {});
}

void Missed::APeerDoesNotAnswer()
{
    // Asked for at 08:29:58, with a volume of its own, the message holds the loop until 08:30:04.
    Device().AnswerNever("sound.SetPlayerVolume");
    Device().AnswerNever("sound.PlayFile");
    WriteSchedule("1111111|08:30:06|*|*|*|||PlayMessage|gong.mp3,70\n1111111|08:30:00|*|*|*|||Volume|1\n");
    QVERIFY(StartDaemon());
    Expect({Record("5 (Volume)", 2, "08:30:00", "the loop waited for com.kestrelix.ozna.soundmanager")});
    QVERIFY(!Device().Calls().contains(u"sound.SetMasterVolume d 1"_s));
}

void Missed::AMessageStillPlays()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n");
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    Time().Set(MONDAY.addDays(1), {8, 29, 55});
    Expect({Record("1 (PlayMessage)", 1, "08:30:00", "it still plays or works from its last start")});
    QCOMPARE(Device().Calls().size(), 1);
}

void Missed::MidnightCannotStart()
{
    WriteSchedule("1111111|00:00:00|*|*|*|||Volume|1\n");
    Time().Set(MONDAY, {23, 59, 50});
    QVERIFY(StartDaemon());
    Expect({Record("5 (Volume)", 1, "00:00:00", "its time cannot start: the daemon looks ahead within one day only")});
    COMPARE_LINES(Device().Calls(), {});
}

OZNA_CASE(Missed, Missed)
#include "tst_Missed.moc"
