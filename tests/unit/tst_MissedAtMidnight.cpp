#include "Log.h"
#include "MissedTest.h"
#include "Suite.h"
#include "TimeZone.h"

using namespace MissedLines;
using namespace Qt::StringLiterals;

// Starts at midnight, of here or of UTC, and right after it.
class MissedAtMidnightTest final : public MissedTest
{
    Q_OBJECT
private Q_SLOTS:
    void AStartAtMidnightCannotBe();
    void AStartRightAfterMidnightIsStartedOrTold();
    void ASpotDateThatBeginsAtItsStart();
    void AStartIsToldOnceThoughItPassesTwice();
    void APlaylistOfMidnightThatHasPlayedCannotStart();
    void APlaylistOfMidnightThatHasNotPlayedStartsByLuck();
    void AJoinAfterMidnightAnswersTheStartOfYesterday();
    void WhatIsAskedForAtMidnightIsAnswered();
    void AnyStartOfMidnightInUtcMayBeMissed();
    void AJoinFromMidnightOnAnswersNoStartOfATimeThatIsNone();
};

void MissedAtMidnightTest::AStartAtMidnightCannotBe()
{
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 30));
    StartSchedule({"00:00:00 Volume|1", "1110111 00:00:00 Volume|2", "24:00:00 Volume|3"});
    Pass(60);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "00:00:00", CANNOT_START)});
}

void MissedAtMidnightTest::AStartRightAfterMidnightIsStartedOrTold()
{
    int started = 0;
    for (const QByteArray& start : {QByteArray("00:00:01"), QByteArray("00:00:02"), QByteArray("00:00:03")})
    {
        for (int phase_ms = 200; phase_ms <= 3000; phase_ms += 200)
        {
            Time().SetLocal(WEDNESDAY, QTime(23, 59, 30));
            StartSchedule({start + " Volume|1"});
            Pass(60, phase_ms);
            const bool isStarted = !TakeRequests().isEmpty();
            EXPECT_LOG(LEVEL_WARNING, (LogLines(isStarted ? 0 : 1, Missed(VOLUME, 1, start, LUCK))));
            started += isStarted ? 1 : 0;
        }
    }
    // In a third, two thirds and all of the phases.
    QCOMPARE(started, 5 + 10 + 15);
}

void MissedAtMidnightTest::ASpotDateThatBeginsAtItsStart()
{
    const TimeZone there("America/Los_Angeles");
    Time().SetLocal(QDate(2024, 1, 14), QTime(15, 59, 30));
    Data().WriteSchedule("0000000|16:00:00|15|1|*|||Volume|1\n0000000|16:00:05|15|1|*|||Volume|2\n");
    Create();
    Engine().Start();
    LogRecorder::Clear();
    Pass(60);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "16:00:00", UTC_MIDNIGHT)});
}

void MissedAtMidnightTest::AStartIsToldOnceThoughItPassesTwice()
{
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 50));
    StartSchedule({"00:00:00 Volume|1"});
    Pass(20);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "00:00:00", CANNOT_START)});
    Time().Step_s(-20);
    Pass(40);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedAtMidnightTest::APlaylistOfMidnightThatHasPlayedCannotStart()
{
    WritePlaylist();
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 50));
    StartSchedule({"00:00:00 PlayPlaylist|day"});
    Pass(60);
    QCOMPARE(TakeRequests().size(), 1);
    EndPlaylist();
    LogRecorder::Clear();
    Time().Advance_s(86400 - 80);
    Pass(60);
    QCOMPARE(TakeRequests(), QStringList());
    EXPECT_LOG(LEVEL_WARNING, {Missed(PLAYLIST, 1, "00:00:00", CANNOT_START)});
}

void MissedAtMidnightTest::APlaylistOfMidnightThatHasNotPlayedStartsByLuck()
{
    WritePlaylist();
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 50));
    StartSchedule({"00:00:00 PlayPlaylist|day"});
    Pass(3);
    Time().Advance_s(200);
    Pass(9);
    EXPECT_LOG(LEVEL_WARNING, {Missed(PLAYLIST, 1, "00:00:00", LUCK)});
}

void MissedAtMidnightTest::AJoinAfterMidnightAnswersTheStartOfYesterday()
{
    WritePlaylist();
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 30));
    StartSchedule({"23:59:50 PlayPlaylist|day"});
    Pass(3);
    Time().Advance_s(30);
    Pass(9);
    QCOMPARE(TakeRequests().size(), 1);
    QVERIFY(LogRecorder::Messages(LEVEL_WARNING).filter(u"MISSED"_s).isEmpty());
    LogRecorder::Clear();
}

// A far pass and an early one come at midnight sharp, eight seconds before it.
void MissedAtMidnightTest::WhatIsAskedForAtMidnightIsAnswered()
{
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 30));
    StartSchedule({"00:00:08 PlayMessage|gong.mp3"});
    Pass(60);
    QCOMPARE(TakeRequests(), QStringList{u"00:00:00 PlayFile ss gong.mp3 00:00:08"_s});
    EXPECT_LOG(LEVEL_WARNING, {});
}

// Only a spot date begins then.
void MissedAtMidnightTest::AnyStartOfMidnightInUtcMayBeMissed()
{
    const TimeZone there("America/Los_Angeles");
    Time().SetLocal(QDate(2024, 1, 14), QTime(15, 59, 30));
    StartSchedule({"16:00:00 Volume|1"});
    Pass(3);
    Time().Advance_s(60);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "16:00:00", STOOD_STILL)});
}

// 08:29:65 is late from midnight on, though it is started at 08:30:05: the join is not the start of the day before.
void MissedAtMidnightTest::AJoinFromMidnightOnAnswersNoStartOfATimeThatIsNone()
{
    Data().WritePlaylist("long.mp3;7200\nlast.mp3;60\n", u"long"_s);
    StartBefore(60'000, {"08:29:65 PlayPlaylist|long"});
    Pass(3);
    Time().Advance_s(57'057);
    Pass(3);
    QCOMPARE(TakeRequests().size(), 1);
    QCOMPARE(LogRecorder::Messages(LEVEL_WARNING).filter(u"IsDelayed but still valid"_s).size(), 1);
    LogRecorder::Clear();
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(PLAYLIST, 1, "2024-05-15 08:30:05", STOOD_STILL)});
}

OZNA_CASE(MissedAtMidnight, MissedAtMidnightTest)
#include "tst_MissedAtMidnight.moc"
