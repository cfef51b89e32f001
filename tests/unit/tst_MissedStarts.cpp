#include "Log.h"
#include "MissedLines.h"
#include "PassingTest.h"
#include "RequestTable.h"
#include "Suite.h"
#include "TimeZone.h"

#include <SoundManagerProxy.h>
#include <UpdateManagerProxy.h>

using namespace MissedLines;
using namespace Qt::StringLiterals;

namespace
{

const QDate WEDNESDAY(2024, 5, 15);
const QTime DUE(8, 30);
const QByteArray VOLUME = "5 (Volume)";
const QByteArray MESSAGE = "1 (PlayMessage)";
const QByteArray PLAYLIST = "2 (PlayPlaylist)";

enum Load
{
    RELOAD,
    UPDATE,
    ENABLING,
    ANOTHER_FILE,
};

} // namespace

Q_DECLARE_METATYPE(Load)

// Every start that passes leaves a word: its task is started, or a record tells why not.
class MissedStartsTest final : public PassingTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALoadRightBeforeTakesTheStart_data();
    void ALoadRightBeforeTakesTheStart();
    void EachKindOfLoadTakesIt_data();
    void EachKindOfLoadTakesIt();
    void ALoadAfterTheStartTellsNothing_data();
    void ALoadAfterTheStartTellsNothing();
    void ALoadInTheSecondOfAStartThatIsHeldUpTakesIt();
    void AMessageThatALoadStopsIsMissedUnlessItIsAskedForAgain_data();
    void AMessageThatALoadStopsIsMissedUnlessItIsAskedForAgain();
    void WhatPassesWhileDisabledTellsNothing();
    void AProcessThatStandsStill_data();
    void AProcessThatStandsStill();
    void ADayThatIsSleptThroughIsJudgedByItsOwnRules();
    void ALoopThatWaitsForAPeer();
    void ATaskThatStillWorks();
    void AStartAtMidnightCannotBe();
    void AStartRightAfterMidnightIsStartedOrTold();
    void ASpotDateThatBeginsAtItsStart();
    void APlaylistIsMissedWhenItCanNoLongerBeJoined_data();
    void APlaylistIsMissedWhenItCanNoLongerBeJoined();
    void NothingIsToldOf_data();
    void NothingIsToldOf();
    void NothingIsToldWhenTheClockIsPutBack_data();
    void NothingIsToldWhenTheClockIsPutBack();
    void OfManyTheLatestAreToldAndTheOthersCounted();
    void WhatALoadForcesIsNotMissed();
    void APlaylistBetweenTwoLoadsIsJoined();
    void APlaylistThatALoadCannotJoinAnyMoreIsMissed();
    void WhatIsHeldUpInItsSecondIsMissedForThePeer();
    void ShortWaitsAddUp();
    void ATimeWhosePartsCarryOverIsMissedLikeAnyOther();
    void AStartIsToldOnceThoughItPassesTwice();
    void APlaylistOfMidnightThatHasPlayedCannotStart();
    void APlaylistOfMidnightThatHasNotPlayedStartsByLuck();
    void AJoinAfterMidnightAnswersTheStartOfYesterday();
    void WhatIsAskedForAtMidnightIsAnswered();
    void WhatPassesWhileALoadIsMadeIsMissed();
    void AStopInTheSecondOfAStartThatIsHeldUpTellsNothing();
    void ALoadInTheVerySecondOfAStartTakesIt();
    void ALoadAfterTheClockWasPutBackTakesNothingToCome();
    void NoPassTellsOfAScheduleThatWent();
    void WhatRunsWhileTheClockIsPutForwardHeldItsStart();
    void WhatRanUntilRightBeforeItsStartHeldIt();
    void WhatWasForcedOnAnotherDayIsMissedOnItsOwn();
    void WhatALoadForcesAnewIsNotMissed();
    void APlaylistIsJoinedInItsLastSecond();
    void AnyStartOfMidnightInUtcMayBeMissed();
    void WhoHeldTheLoopThroughoutIsTheCause();
    void WhoHeldTheLoopUntilTheStartIsTheCause();
    void AClockThatIsPutBackIsNoCause();
    void OfManyYearsTheOlderStartsAreNotCounted();
    void WhatIsMissedIsToldInTheOrderOfTheTimes();
    void AProcessThatStandsStillRightAfterALoad_data();
    void AProcessThatStandsStillRightAfterALoad();
    void WhoWasWaitedForLongBeforeIsNoCause();
    void ATimeWhosePartsCarryOverHasItsSpotDate();
    void OfManyYearsWithoutAStartTheRestIsTold();
    void TheCauseIsThatOfTheLastTimeThatItPasses();
    void WhatRanBeforeTheClockWasPutBackDoesNotHoldTheStart();
    void AJoinFromMidnightOnAnswersNoStartOfATimeThatIsNone();
    void AMissOfTheDayBeforeDoesNotUndoAnAnswer();

private:
    // Loads the lines so many milliseconds before 08:30:00.
    void StartBefore(int before_ms, const QByteArrayList& lines);
    void LoadAnew(Load load);
};

void MissedStartsTest::StartBefore(int before_ms, const QByteArrayList& lines)
{
    Time().SetLocal(WEDNESDAY, DUE.addMSecs(-before_ms));
    StartSchedule(lines);
}

void MissedStartsTest::LoadAnew(Load load)
{
    switch (load)
    {
    case RELOAD: QCOMPARE(Engine().Reload(), 0); break;
    case UPDATE: Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(0, 2); break;
    case ENABLING:
        QCOMPARE(Engine().SetEnabled(false), 0);
        QCOMPARE(Engine().SetEnabled(true), 0);
        break;
    case ANOTHER_FILE: QCOMPARE(Engine().SetScheduleFile(u"schedule.csv"_s), 0); break;
    }
}

void MissedStartsTest::ALoadRightBeforeTakesTheStart_data()
{
    QTest::addColumn<int>("before_ms");
    QTest::addColumn<bool>("isMissed");
    QTest::newRow("a moment before") << 1 << true;
    QTest::newRow("a second before") << 1000 << true;
    QTest::newRow("three seconds before") << 3000 << true;
    QTest::newRow("a fifth more") << 3200 << false;
    QTest::newRow("long before") << 9000 << false;
}

void MissedStartsTest::ALoadRightBeforeTakesTheStart()
{
    QFETCH(int, before_ms);
    QFETCH(bool, isMissed);
    StartBefore(before_ms, {"08:30:00 Volume|1"});
    // The first far pass comes 3 s after the load, and tells.
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, (LogLines(isMissed ? 1 : 0, Missed(VOLUME, 1, "08:30:00", LOADED))));
    Pass(30);
    QCOMPARE(TakeRequests().size(), isMissed ? 0 : 1);
}

void MissedStartsTest::EachKindOfLoadTakesIt_data()
{
    QTest::addColumn<Load>("load");
    QTest::newRow("reload") << RELOAD;
    QTest::newRow("update") << UPDATE;
    QTest::newRow("enabling") << ENABLING;
    QTest::newRow("another file") << ANOTHER_FILE;
}

void MissedStartsTest::EachKindOfLoadTakesIt()
{
    QFETCH(Load, load);
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    LoadAnew(load);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", LOADED)});
    QCOMPARE(TakeRequests(), QStringList());
}

void MissedStartsTest::ALoadAfterTheStartTellsNothing_data()
{
    EachKindOfLoadTakesIt_data();
}

void MissedStartsTest::ALoadAfterTheStartTellsNothing()
{
    QFETCH(Load, load);
    StartBefore(30'000, {"08:30:00 Volume|1"});
    for (const int after_s : {31, 1, 5})
    {
        Pass(after_s);
        LoadAnew(load);
    }
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {});
    QCOMPARE(TakeRequests(), QStringList{u"08:30:00 SetMasterVolume(d:1)"_s});
}

// It was due, and would still have been started.
void MissedStartsTest::ALoadInTheSecondOfAStartThatIsHeldUpTakesIt()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_ms(1500);
    LoadAnew(RELOAD);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", LOADED)});
}

void MissedStartsTest::AMessageThatALoadStopsIsMissedUnlessItIsAskedForAgain_data()
{
    QTest::addColumn<int>("before_s");
    QTest::addColumn<bool>("isMissed");
    QTest::newRow("seven seconds before") << 7 << false;
    QTest::newRow("four seconds before") << 4 << false;
    QTest::newRow("three seconds before") << 3 << true;
    QTest::newRow("a second before") << 1 << true;
}

void MissedStartsTest::AMessageThatALoadStopsIsMissedUnlessItIsAskedForAgain()
{
    QFETCH(int, before_s);
    QFETCH(bool, isMissed);
    StartBefore(30'000, {"08:30:00 PlayMessage|gong.mp3"});
    Pass(30 - before_s);
    QCOMPARE(TakeRequests(), QStringList{u"08:29:52 PlayFile(s:gong.mp3, s:08:30:00)"_s});
    LoadAnew(RELOAD);
    Pass(30);
    QCOMPARE(TakeRequests().size(), isMissed ? 1 : 2); // its stop first
    EXPECT_LOG(LEVEL_WARNING, (LogLines(isMissed ? 1 : 0, Missed(MESSAGE, 1, "08:30:00", LOADED))));
}

void MissedStartsTest::WhatPassesWhileDisabledTellsNothing()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(20);
    QCOMPARE(Engine().SetEnabled(false), 0);
    Time().Advance_s(60);
    QCOMPARE(Engine().SetEnabled(true), 0);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedStartsTest::AProcessThatStandsStill_data()
{
    QTest::addColumn<int>("before_s");
    QTest::addColumn<int>("still_s");
    QTest::addColumn<bool>("isMissed");
    QTest::newRow("seen ahead, until two seconds after the start") << 2 << 4 << false;
    QTest::newRow("seen ahead, until three seconds after it") << 2 << 5 << true;
    QTest::newRow("seen ahead, an hour") << 2 << 3600 << true;
    QTest::newRow("not seen, until a second before the start") << 20 << 19 << false;
    QTest::newRow("not seen, until the start") << 20 << 20 << true;
    QTest::newRow("not seen, an hour") << 20 << 3600 << true;
}

void MissedStartsTest::AProcessThatStandsStill()
{
    QFETCH(int, before_s);
    QFETCH(int, still_s);
    QFETCH(bool, isMissed);
    StartBefore(62'000, {"08:30:00 Volume|1"});
    Pass(62 - before_s);
    // What wakes up runs the passes that are due.
    Time().Advance_s(still_s);
    CheckFar();
    CheckEarly();
    EXPECT_LOG(LEVEL_WARNING, (LogLines(isMissed ? 1 : 0, Missed(VOLUME, 1, "08:30:00", STOOD_STILL))));
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {});
    QCOMPARE(Bus().Requests().size() + TakeRequests().size(), isMissed ? 0 : 1);
}

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
    QCOMPARE(TakeRequests(), QStringList{u"08:31:00 SetMasterVolume(d:3)"_s});
}

void MissedStartsTest::ALoopThatWaitsForAPeer()
{
    for (const char* method : {"SetPlayerVolume", "PlayFile"})
        Bus().Answer(method, [this](const PeerRequest&) {
            Time().Advance_ms(SOUND_TIMEOUT_MS);
            return PeerReply::Failed(u"Did not receive a reply"_s);
        });
    // The message is asked for 8 s ahead: from two seconds before the volume until four seconds after.
    StartBefore(30'000, {"08:30:06 PlayMessage|gong.mp3,70", "08:30:00 Volume|1", "08:30:30 Volume|2"});
    Pass(60);
    QStringList missed = LogRecorder::Messages(LEVEL_WARNING).filter(u"MISSED"_s);
    LogRecorder::Clear();
    QCOMPARE(missed, QStringList{u"MISSED action: 5 (Volume), line 2, due at 08:30:00: the loop waited for "
                                 u"com.kestrelix.ozna.soundmanager"_s});
    QCOMPARE(TakeRequests().filter(u"SetMasterVolume"_s), QStringList{u"08:30:30 SetMasterVolume(d:2)"_s});
}

void MissedStartsTest::ATaskThatStillWorks()
{
    WritePlaylist();
    StartBefore(20'000, {"08:30:00 PlayMessage|gong.mp3", "08:30:00 PlayPlaylist|day", "08:30:00 RecordPhoto|5,-1"});
    Pass(30);
    QVERIFY(TakeRequests().size() >= 3);
    LogRecorder::Clear();
    Time().Advance_s(86400 - 30);
    Pass(30);
    LogLines lines{Missed(MESSAGE, 1, "08:30:00", STILL_RUNS), Missed(PLAYLIST, 2, "08:30:00", STILL_RUNS),
                   Missed("4 (RecordPhoto)", 3, "08:30:00", STILL_RUNS)};
    EXPECT_LOG(LEVEL_WARNING, (lines));
    QCOMPARE(TakeRequests(), QStringList());
}

void MissedStartsTest::AStartAtMidnightCannotBe()
{
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 30));
    StartSchedule({"00:00:00 Volume|1", "1110111 00:00:00 Volume|2", "24:00:00 Volume|3"});
    Pass(60);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "00:00:00", CANNOT_START)});
}

void MissedStartsTest::AStartRightAfterMidnightIsStartedOrTold()
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

void MissedStartsTest::ASpotDateThatBeginsAtItsStart()
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

void MissedStartsTest::APlaylistIsMissedWhenItCanNoLongerBeJoined_data()
{
    QTest::addColumn<int>("still_s");
    QTest::addColumn<bool>("isMissed");
    QTest::newRow("within its tolerance") << 80 << false;
    QTest::newRow("past its tolerance") << 100 << true;
}

void MissedStartsTest::APlaylistIsMissedWhenItCanNoLongerBeJoined()
{
    QFETCH(int, still_s);
    QFETCH(bool, isMissed);
    WritePlaylist();
    StartBefore(30'000, {"08:30:00 PlayPlaylist|day"});
    Pass(15);
    Time().Advance_s(15 + still_s);
    Pass(9);
    QStringList warnings = LogRecorder::Messages(LEVEL_WARNING);
    LogRecorder::Clear();
    QCOMPARE(warnings.size(), 1);
    QCOMPARE(warnings[0].startsWith(u"MISSED action: 2 (PlayPlaylist), line 1, due at 08:30:00: "_s), isMissed);
    QCOMPARE(TakeRequests().size(), isMissed ? 0 : 1);
}

void MissedStartsTest::NothingIsToldOf_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("what is not due that day") << QByteArray("1101111|08:30:00|*|*|*|||Volume|1");
    QTest::newRow("what is not valid yet") << QByteArray("1111111|08:30:00|*|*|*|20240516||Volume|1");
    QTest::newRow("what has expired") << QByteArray("1111111|08:30:00|*|*|*||20240514|Volume|1");
    QTest::newRow("another spot date") << QByteArray("0000000|08:30:00|16|*|*|||Volume|1");
    QTest::newRow("a time that no day has") << QByteArray("1111111|25:30:00|*|*|*|||Volume|1");
}

void MissedStartsTest::NothingIsToldOf()
{
    QFETCH(QByteArray, line);
    Time().SetLocal(WEDNESDAY, QTime(8, 29, 30));
    StartWith({line});
    Pass(3);
    Time().Advance_s(60);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedStartsTest::NothingIsToldWhenTheClockIsPutBack_data()
{
    QTest::addColumn<int>("back_s");
    for (const int back_s : {2, 5, 30, 3600, 86400})
        QTest::addRow("by %d s", back_s) << back_s;
}

void MissedStartsTest::NothingIsToldWhenTheClockIsPutBack()
{
    QFETCH(int, back_s);
    for (int after_s = 0; after_s < 12; ++after_s)
    {
        StartBefore(30'000, {"08:30:00 Volume|1", "08:29:40 Volume|2", "07:30:01 Volume|3"});
        Pass(25 + after_s);
        Time().Step_s(-back_s);
        Pass(60);
        EXPECT_LOG(LEVEL_WARNING, {});
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

// The stop of the message holds the load until the light is due: it is forced then.
void MissedStartsTest::WhatALoadForcesIsNotMissed()
{
    StartBefore(30'000, {"08:29:50 PlayMessage|gong.mp3", "08:30:00 Light|80"});
    Pass(29);
    TakeRequests();
    Bus().Answer("StopPlay", [this](const PeerRequest&) {
        Time().Advance_ms(SOUND_TIMEOUT_MS);
        return PeerReply(0);
    });
    LoadAnew(RELOAD);
    Bus().Clear();
    Pass(6);
    const QStringList expected{u"08:30:05 SetIntensity(u:80)"_s, u"08:30:05 Switch(b:true)"_s};
    QCOMPARE(TakeRequests(), expected);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedStartsTest::APlaylistBetweenTwoLoadsIsJoined()
{
    WritePlaylist();
    StartBefore(1000, {"08:30:00 PlayPlaylist|day"});
    Pass(2);
    LoadAnew(RELOAD);
    Pass(9);
    QCOMPARE(TakeRequests().size(), 1);
    QVERIFY(LogRecorder::Messages(LEVEL_WARNING).filter(u"MISSED"_s).isEmpty());
    LogRecorder::Clear();
}

void MissedStartsTest::APlaylistThatALoadCannotJoinAnyMoreIsMissed()
{
    Data().WritePlaylist("first.mp3;3\nlast.mp3;20\n", u"short"_s); // five seconds are tolerated
    StartBefore(30'000, {"08:30:00 PlayPlaylist|short"});
    Pass(16);
    Time().Step_s(17);
    Time().Advance_s(1);
    LoadAnew(RELOAD);
    Pass(9);
    QCOMPARE(TakeRequests(), QStringList());
    EXPECT_LOG(LEVEL_WARNING, {Missed(PLAYLIST, 1, "08:30:00", LOADED)});
}

// A far pass comes in the very moment in which both are due, and the first of them is not answered.
void MissedStartsTest::WhatIsHeldUpInItsSecondIsMissedForThePeer()
{
    Bus().Answer("SetMasterVolume", [this](const PeerRequest&) {
        Time().Advance_ms(SOUND_TIMEOUT_MS);
        return PeerReply::Failed(u"Did not receive a reply"_s);
    });
    StartBefore(30'000, {"08:30:00 Volume|1", "08:30:00 Volume|2"});
    Pass(40);
    QCOMPARE(LogRecorder::Messages(LEVEL_WARNING).filter(u"MISSED"_s),
             QStringList{u"MISSED action: 5 (Volume), line 2, due at 08:30:00: the loop waited for "
                         u"com.kestrelix.ozna.soundmanager"_s});
    LogRecorder::Clear();
}

void MissedStartsTest::ShortWaitsAddUp()
{
    for (const char* method : {"SetPlayerVolume", "PlayFile"})
        Bus().Answer(method, [this](const PeerRequest&) {
            Time().Advance_ms(900);
            return PeerReply(0);
        });
    // Asked for from a second before the volume on, until six seconds after it.
    QByteArrayList lines(4, "08:30:07 PlayMessage|gong.mp3,70");
    StartBefore(30'000, lines << "08:30:00 Volume|1");
    Pass(40);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 5, "08:30:00", "the loop waited for com.kestrelix.ozna.soundmanager")});
}

void MissedStartsTest::ATimeWhosePartsCarryOverIsMissedLikeAnyOther()
{
    StartBefore(1000, {"08:29:61 Volume|1", "07:90:02 Volume|2", "08:29:70 Volume|3"});
    Pass(20);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:01", LOADED), Missed(VOLUME, 2, "08:30:02", LOADED)});
    QCOMPARE(TakeRequests(), QStringList{u"08:30:10 SetMasterVolume(d:3)"_s});
}

void MissedStartsTest::AStartIsToldOnceThoughItPassesTwice()
{
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 50));
    StartSchedule({"00:00:00 Volume|1"});
    Pass(20);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "00:00:00", CANNOT_START)});
    Time().Step_s(-20);
    Pass(40);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedStartsTest::APlaylistOfMidnightThatHasPlayedCannotStart()
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

void MissedStartsTest::APlaylistOfMidnightThatHasNotPlayedStartsByLuck()
{
    WritePlaylist();
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 50));
    StartSchedule({"00:00:00 PlayPlaylist|day"});
    Pass(3);
    Time().Advance_s(200);
    Pass(9);
    EXPECT_LOG(LEVEL_WARNING, {Missed(PLAYLIST, 1, "00:00:00", LUCK)});
}

void MissedStartsTest::AJoinAfterMidnightAnswersTheStartOfYesterday()
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
void MissedStartsTest::WhatIsAskedForAtMidnightIsAnswered()
{
    Time().SetLocal(WEDNESDAY, QTime(23, 59, 30));
    StartSchedule({"00:00:08 PlayMessage|gong.mp3"});
    Pass(60);
    QCOMPARE(TakeRequests(), QStringList{u"00:00:00 PlayFile(s:gong.mp3, s:00:00:08)"_s});
    EXPECT_LOG(LEVEL_WARNING, {});
}

// The stop of the message holds the load.
void MissedStartsTest::WhatPassesWhileALoadIsMadeIsMissed()
{
    StartBefore(30'000, {"08:29:50 PlayMessage|gong.mp3", "08:30:00 Volume|1"});
    Pass(29);
    Bus().Answer("StopPlay", [this](const PeerRequest&) {
        Time().Advance_ms(SOUND_TIMEOUT_MS);
        return PeerReply(0);
    });
    LoadAnew(RELOAD);
    Pass(6);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 2, "08:30:00", LOADED)});
}

void MissedStartsTest::AStopInTheSecondOfAStartThatIsHeldUpTellsNothing()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_ms(1500);
    LoadAnew(ENABLING);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedStartsTest::ALoadInTheVerySecondOfAStartTakesIt()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_s(1);
    CheckFar();
    LoadAnew(RELOAD);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", LOADED)});
}

void MissedStartsTest::ALoadAfterTheClockWasPutBackTakesNothingToCome()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_s(1);
    CheckFar();
    Time().Step_s(-20);
    LoadAnew(RELOAD);
    Pass(40);
    QCOMPARE(TakeRequests(), QStringList{u"08:30:00 SetMasterVolume(d:1)"_s});
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedStartsTest::NoPassTellsOfAScheduleThatWent()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(20);
    QCOMPARE(Engine().SetEnabled(false), 0);
    Pass(20);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedStartsTest::WhatRunsWhileTheClockIsPutForwardHeldItsStart()
{
    StartBefore(30'000, {"08:30:00 PlayMessage|gong.mp3"});
    Pass(40);
    Time().Step_s(86400);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(MESSAGE, 1, "08:30:00", STILL_RUNS)});
}

void MissedStartsTest::WhatRanUntilRightBeforeItsStartHeldIt()
{
    StartBefore(30'000, {"08:30:00 PlayMessage|gong.mp3"});
    Pass(39);
    Time().Advance_s(86400 - 10);
    CheckFar();
    EndMessage();
    Pass(6);
    EXPECT_LOG(LEVEL_WARNING, {Missed(MESSAGE, 1, "08:30:00", STILL_RUNS)});
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

void MissedStartsTest::WhatALoadForcesAnewIsNotMissed()
{
    Time().SetLocal(WEDNESDAY.addDays(-1), QTime(9, 0));
    StartSchedule({"0010000 08:30:00 Light|80"});
    Pass(3);
    Time().Advance_s(86400 - 1800);
    LoadAnew(RELOAD);
    Pass(6);
    QCOMPARE(TakeRequests().size(), 2);
    EXPECT_LOG(LEVEL_WARNING, {});
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

// Only a spot date begins then.
void MissedStartsTest::AnyStartOfMidnightInUtcMayBeMissed()
{
    const TimeZone there("America/Los_Angeles");
    Time().SetLocal(QDate(2024, 1, 14), QTime(15, 59, 30));
    StartSchedule({"16:00:00 Volume|1"});
    Pass(3);
    Time().Advance_s(60);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "16:00:00", STOOD_STILL)});
}

// Not who was waited for longer, but not when it mattered.
void MissedStartsTest::WhoHeldTheLoopThroughoutIsTheCause()
{
    Bus().Answer("TakePhotoStream", [this](const PeerRequest&) {
        Time().Advance_ms(6000);
        return PeerReply(0);
    });
    Bus().Answer("SetMasterVolume", [this](const PeerRequest&) {
        Time().Advance_ms(5500);
        return PeerReply(0);
    });
    StartBefore(30'000, {"08:29:50 RecordPhoto|5,-1", "08:29:58 Volume|1", "08:30:00 Volume|2"});
    Pass(40);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 3, "08:30:00", "the loop waited for com.kestrelix.ozna.soundmanager")});
}

// It is over in time, but kept the far passes from seeing the start ahead.
void MissedStartsTest::WhoHeldTheLoopUntilTheStartIsTheCause()
{
    Bus().Answer("SetMasterVolume", [this](const PeerRequest&) {
        Time().Advance_ms(15'000);
        return PeerReply(0);
    });
    StartBefore(30'000, {"08:29:46 Volume|1", "08:30:00 Volume|2"});
    Pass(40);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 2, "08:30:00", "the loop waited for com.kestrelix.ozna.soundmanager")});
}

void MissedStartsTest::AClockThatIsPutBackIsNoCause()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(6);
    Time().Advance_s(60);
    Time().Step_s(-20);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", STOOD_STILL)});
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

void MissedStartsTest::AProcessThatStandsStillRightAfterALoad_data()
{
    QTest::addColumn<int>("before_ms");
    QTest::addColumn<QByteArray>("cause");
    QTest::newRow("two seconds before") << 2000 << LOADED;
    QTest::newRow("long before") << 20'000 << STOOD_STILL;
}

void MissedStartsTest::AProcessThatStandsStillRightAfterALoad()
{
    QFETCH(int, before_ms);
    QFETCH(QByteArray, cause);
    StartBefore(before_ms, {"08:30:00 Volume|1"});
    Time().Advance_s(60);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", cause)});
}

void MissedStartsTest::WhoWasWaitedForLongBeforeIsNoCause()
{
    Bus().Answer("SetMasterVolume", [this](const PeerRequest&) {
        Time().Advance_ms(SOUND_TIMEOUT_MS);
        return PeerReply(0);
    });
    StartBefore(60'000, {"08:29:10 Volume|1", "08:30:00 Volume|2"});
    Pass(30);
    Time().Advance_s(60);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 2, "08:30:00", STOOD_STILL)});
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

void MissedStartsTest::TheCauseIsThatOfTheLastTimeThatItPasses()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_s(1);
    CheckFar();
    Time().Step_s(-60);
    Pass(6);
    Time().Step_s(60);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", CLOCK_FORWARD)});
}

void MissedStartsTest::WhatRanBeforeTheClockWasPutBackDoesNotHoldTheStart()
{
    StartBefore(30'000, {"08:30:00 PlayMessage|gong.mp3"});
    Pass(39);
    Time().Advance_s(86400 - 10);
    CheckFar();
    EndMessage();
    LogRecorder::Clear();
    Time().Step_s(-30);
    Pass(6);
    Time().Advance_s(60);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(MESSAGE, 1, "08:30:00", STOOD_STILL)});
}

// 08:29:65 is late from midnight on, though it is started at 08:30:05: the join is not the start of the day before.
void MissedStartsTest::AJoinFromMidnightOnAnswersNoStartOfATimeThatIsNone()
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
