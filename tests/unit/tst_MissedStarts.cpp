#include "Log.h"
#include "MissedTest.h"
#include "Suite.h"

#include <utility>

using namespace MissedLines;
using namespace Qt::StringLiterals;

// Every start that passes leaves a word: its task is started, or a record tells why not.
class MissedStartsTest final : public MissedTest
{
    Q_OBJECT
private Q_SLOTS:
    void ADayThatIsSleptThroughIsJudgedByItsOwnRules();
    void APlaylistIsMissedWhenItCanNoLongerBeJoined();
    void NothingIsToldOf();
    void NothingIsToldWhenTheClockIsPutBack();
    void NothingIsToldTwiceWhenTheClockIsPutBackAndForward();
    void OfManyTheLatestAreToldAndTheOthersCounted();
    void ATimeWhosePartsCarryOverIsMissedLikeAnyOther();
    void WhatWasForcedOnAnotherDayIsMissedOnItsOwn();
    void APlaylistIsJoinedInItsLastSecond();
    void OfManyYearsTheOlderStartsAreNotCounted();
    void WhatIsMissedIsToldInTheOrderOfTheTimes();
    void ATimeWhosePartsCarryOverHasItsSpotDate();
    void OfManyYearsWithoutAStartTheRestIsTold();
    void AMissOfTheDayBeforeDoesNotUndoAnAnswer();
};

void MissedStartsTest::ADayThatIsSleptThroughIsJudgedByItsOwnRules()
{
    // From Wednesday to Saturday.
    StartBefore(3000, {"1111100 08:30:30 Volume|1", "0001000 08:30:30 Volume|2", "0000010 08:31:00 Volume|3",
                       "0000000 08:30:30 Volume|4"});
    Pass(3);
    Time().Advance_s(3 * 86400);
    Pass(90);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "2024-05-15 08:30:30", STOOD_STILL),
                               Missed(VOLUME, 1, "2024-05-16 08:30:30", STOOD_STILL),
                               Missed(VOLUME, 2, "2024-05-16 08:30:30", STOOD_STILL),
                               Missed(VOLUME, 1, "2024-05-17 08:30:30", STOOD_STILL)});
    QCOMPARE(TakeRequests(), QStringList{u"08:31:00 SetMasterVolume d 3"_s});
}

void MissedStartsTest::APlaylistIsMissedWhenItCanNoLongerBeJoined()
{
    WritePlaylist();
    // It tolerates 94 s.
    for (const auto& [still_s, isMissed] : {std::pair(80, false), {100, true}})
    {
        StartBefore(30'000, {"08:30:00 PlayPlaylist|day"});
        Pass(15);
        Time().Advance_s(15 + still_s);
        Pass(9);
        const QStringList warnings = LogRecorder::Messages(LEVEL_WARNING);
        LogRecorder::Clear();
        QCOMPARE(warnings.size(), 1);
        QCOMPARE(warnings[0].startsWith(u"MISSED action: 2 (PlayPlaylist), line 1, due at 08:30:00: "_s), isMissed);
        QCOMPARE(TakeRequests().size(), isMissed ? 0 : 1);
    }
}

void MissedStartsTest::NothingIsToldOf()
{
    for (const char* line : {"1101111|08:30:00|*|*|*|||Volume|1",         // what is not due that day
                             "1111111|08:30:00|*|*|*|20240516||Volume|1", // what is not valid yet
                             "1111111|08:30:00|*|*|*||20240514|Volume|1", // what has expired
                             "0000000|08:30:00|16|*|*|||Volume|1",        // another spot date
                             "1111111|25:30:00|*|*|*|||Volume|1"})        // a time that no day has
    {
        Time().SetLocal(WEDNESDAY, QTime(8, 29, 30));
        StartWith({line});
        Pass(3);
        Time().Advance_s(60);
        Pass(30);
        EXPECT_LOG(LEVEL_WARNING, {});
    }
}

void MissedStartsTest::NothingIsToldWhenTheClockIsPutBack()
{
    for (const int back_s : {2, 5, 30, 3600, 86400})
    {
        for (int after_s = 0; after_s < 12; ++after_s)
        {
            StartBefore(30'000, {"08:30:00 Volume|1", "08:29:40 Volume|2", "07:30:01 Volume|3"});
            Pass(25 + after_s);
            Time().Step_s(-back_s);
            Pass(60);
            EXPECT_LOG(LEVEL_WARNING, {});
        }
    }
}

// The action knows its last answer alone, and none after a load.
void MissedStartsTest::NothingIsToldTwiceWhenTheClockIsPutBackAndForward()
{
    for (const bool isReload : {true, false})
    {
        StartBefore(30'000, {"08:30:00 Volume|1"});
        Pass(60);
        if (isReload)
        {
            LoadAnew(RELOAD);
        }
        else
        {
            Time().Advance_s(86400 - 60);
            Pass(60);
        }
        const int back_s = isReload ? 3600 : 86400 + 5400;
        Time().Step_s(-back_s);
        Pass(60);
        Time().Step_s(back_s);
        Pass(9);
        EXPECT_LOG(LEVEL_WARNING, {});
        // What the clock had not shown is told.
        Time().Step_s(86400);
        Pass(9);
        EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", CLOCK_FORWARD)});
    }
}

void MissedStartsTest::OfManyTheLatestAreToldAndTheOthersCounted()
{
    QByteArrayList lines;
    for (int second = 59; second >= 10; --second)
        lines.append("08:30:" + QByteArray::number(second) + " Volume|1");
    StartBefore(3000, lines);
    Pass(3);
    Time().Step_s(3600);
    Pass(3);
    LogLines expected;
    for (int second = 40; second < 60; ++second)
        expected.append(Missed(VOLUME, 60 - second, "08:30:" + QByteArray::number(second), CLOCK_FORWARD));
    expected.append(Others(30));
    EXPECT_LOG(LEVEL_WARNING, (expected));
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedStartsTest::ATimeWhosePartsCarryOverIsMissedLikeAnyOther()
{
    StartBefore(1000, {"08:29:61 Volume|1", "07:90:02 Volume|2", "08:29:70 Volume|3"});
    Pass(20);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:01", LOADED), Missed(VOLUME, 2, "08:30:02", LOADED)});
    QCOMPARE(TakeRequests(), QStringList{u"08:30:10 SetMasterVolume d 3"_s});
}

// What is forced waits for a day on which it is due.
void MissedStartsTest::WhatWasForcedOnAnotherDayIsMissedOnItsOwn()
{
    Time().SetLocal(WEDNESDAY.addDays(-1), QTime(9, 0));
    StartSchedule({"0010000 08:30:00 Light|80"});
    Pass(3);
    Time().Advance_s(2 * 86400);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed("0 (Light)", 1, "2024-05-15 08:30:00", STOOD_STILL)});
}

void MissedStartsTest::APlaylistIsJoinedInItsLastSecond()
{
    Data().WritePlaylist("first.mp3;3\nlast.mp3;20\n", u"short"_s); // five seconds are tolerated
    StartBefore(30'000, {"08:30:00 PlayPlaylist|short"});
    Pass(20);
    Time().Advance_s(15);
    CheckFar();
    CheckEarly();
    QCOMPARE(Bus().Requests().size(), 1);
    QVERIFY(LogRecorder::Messages(LEVEL_WARNING).filter(u"MISSED"_s).isEmpty());
    LogRecorder::Clear();
}

void MissedStartsTest::OfManyYearsTheOlderStartsAreNotCounted()
{
    constexpr int YEAR_S = 366 * 86400;
    StartBefore(30'000, {"08:00:00 Volume|1"});
    Pass(3);
    for (int year = 0; year < 200; ++year)
        Time().Step_s(YEAR_S);
    Pass(3);
    const QStringList missed = LogRecorder::Messages(LEVEL_WARNING);
    LogRecorder::Clear();
    QCOMPARE(missed.size(), 21);
    QVERIFY(missed.last().endsWith(u"others before these, and older ones that were not counted"_s));
    // That is told once.
    Time().Step_s(86400);
    Pass(3);
    QCOMPARE(LogRecorder::Messages(LEVEL_WARNING).size(), 1);
    LogRecorder::Clear();
}

// The load tells of the playlist last.
void MissedStartsTest::WhatIsMissedIsToldInTheOrderOfTheTimes()
{
    Data().WritePlaylist("first.mp3;3\nlast.mp3;20\n", u"short"_s);
    StartBefore(30'000, {"08:30:00 PlayPlaylist|short", "08:30:01 Volume|1"});
    Pass(16);
    Time().Step_s(17);
    Time().Advance_s(1);
    LoadAnew(RELOAD);
    Pass(9);
    EXPECT_LOG(LEVEL_WARNING, {Missed(PLAYLIST, 1, "08:30:00", LOADED), Missed(VOLUME, 2, "08:30:01", CLOCK_FORWARD)});
}

void MissedStartsTest::ATimeWhosePartsCarryOverHasItsSpotDate()
{
    Time().SetLocal(WEDNESDAY, DUE.addSecs(-1));
    StartWith({"0000000|08:29:61|15|5|*|||Volume|1"});
    Pass(20);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:01", LOADED)});
}

void MissedStartsTest::OfManyYearsWithoutAStartTheRestIsTold()
{
    StartBefore(30'000, {"0000000 08:00:00 Volume|1"});
    Pass(3);
    for (int year = 0; year < 200; ++year)
        Time().Step_s(366 * 86400);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Others(0, ", and older ones that were not counted")});
}

// The clock goes back to the day before, on which the start is missed, and forward again.
void MissedStartsTest::AMissOfTheDayBeforeDoesNotUndoAnAnswer()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(60);
    QCOMPARE(TakeRequests().size(), 1);
    Time().Step_s(-86400 - 60);
    Pass(3);
    Time().Advance_s(60);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", STOOD_STILL)});
    Time().Step_s(86400);
    Pass(9);
    EXPECT_LOG(LEVEL_WARNING, {});
}

OZNA_CASE(MissedStarts, MissedStartsTest)
#include "tst_MissedStarts.moc"
