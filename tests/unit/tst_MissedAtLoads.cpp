#include "Log.h"
#include "MissedTest.h"
#include "RequestTable.h"
#include "Suite.h"

#include <utility>

using namespace MissedLines;
using namespace Qt::StringLiterals;

// What a load does to the starts around it.
class MissedAtLoadsTest final : public MissedTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALoadRightBeforeTakesTheStart();
    void EachKindOfLoadTakesIt();
    void ALoadAfterTheStartTellsNothing();
    void ALoadInTheSecondOfAStartThatIsHeldUpTakesIt();
    void AMessageThatALoadStopsIsMissedUnlessItIsAskedForAgain();
    void WhatPassesWhileDisabledTellsNothing();
    void WhatALoadForcesIsNotMissed();
    void APlaylistBetweenTwoLoadsIsJoined();
    void APlaylistThatALoadCannotJoinAnyMoreIsMissed();
    void WhatPassesWhileALoadIsMadeIsMissed();
    void AStopInTheSecondOfAStartThatIsHeldUpTellsNothing();
    void ALoadInTheVerySecondOfAStartTakesIt();
    void ALoadAfterTheClockWasPutBackTakesNothingToCome();
    void NoPassTellsOfAScheduleThatWent();
    void WhatALoadForcesAnewIsNotMissed();
    void AProcessThatStandsStillRightAfterALoad();
};

void MissedAtLoadsTest::ALoadRightBeforeTakesTheStart()
{
    for (const auto& [before_ms, isMissed] :
         {std::pair(1, true), {1000, true}, {3000, true}, {3200, false}, {9000, false}})
    {
        StartBefore(before_ms, {"08:30:00 Volume|1"});
        // The first far pass comes 3 s after the load, and tells.
        Pass(3);
        EXPECT_LOG(LEVEL_WARNING, (LogLines(isMissed ? 1 : 0, Missed(VOLUME, 1, "08:30:00", LOADED))));
        Pass(30);
        QCOMPARE(TakeRequests().size(), isMissed ? 0 : 1);
    }
}

void MissedAtLoadsTest::EachKindOfLoadTakesIt()
{
    for (const Load load : {RELOAD, UPDATE, ENABLING, ANOTHER_FILE})
    {
        StartBefore(30'000, {"08:30:00 Volume|1"});
        Pass(29);
        LoadAnew(load);
        Pass(30);
        EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", LOADED)});
        QCOMPARE(TakeRequests(), QStringList());
    }
}

void MissedAtLoadsTest::ALoadAfterTheStartTellsNothing()
{
    for (const Load load : {RELOAD, UPDATE, ENABLING, ANOTHER_FILE})
    {
        StartBefore(30'000, {"08:30:00 Volume|1"});
        for (const int after_s : {31, 1, 5})
        {
            Pass(after_s);
            LoadAnew(load);
        }
        Pass(30);
        EXPECT_LOG(LEVEL_WARNING, {});
        QCOMPARE(TakeRequests(), QStringList{u"08:30:00 SetMasterVolume d 1"_s});
    }
}

// It was due, and would still have been started.
void MissedAtLoadsTest::ALoadInTheSecondOfAStartThatIsHeldUpTakesIt()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_ms(1500);
    LoadAnew(RELOAD);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", LOADED)});
}

void MissedAtLoadsTest::AMessageThatALoadStopsIsMissedUnlessItIsAskedForAgain()
{
    for (const auto& [before_s, isMissed] : {std::pair(7, false), {4, false}, {3, true}, {1, true}})
    {
        StartBefore(30'000, {"08:30:00 PlayMessage|gong.mp3"});
        Pass(30 - before_s);
        QCOMPARE(TakeRequests(), QStringList{u"08:29:52 PlayFile ss gong.mp3 08:30:00"_s});
        LoadAnew(RELOAD);
        Pass(30);
        QCOMPARE(TakeRequests().size(), isMissed ? 1 : 2); // its stop first
        EXPECT_LOG(LEVEL_WARNING, (LogLines(isMissed ? 1 : 0, Missed(MESSAGE, 1, "08:30:00", LOADED))));
    }
}

void MissedAtLoadsTest::WhatPassesWhileDisabledTellsNothing()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(20);
    QCOMPARE(Engine().SetEnabled(false), 0);
    Time().Advance_s(60);
    QCOMPARE(Engine().SetEnabled(true), 0);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {});
}

// The stop of the message holds the load until the light is due: it is forced then.
void MissedAtLoadsTest::WhatALoadForcesIsNotMissed()
{
    StartBefore(30'000, {"08:29:50 PlayMessage|gong.mp3", "08:30:00 Light|80"});
    Pass(29);
    TakeRequests();
    AnswerAfter(SOUND_TIMEOUT_MS, "StopPlay");
    LoadAnew(RELOAD);
    Bus().Clear();
    Pass(6);
    const QStringList expected{u"08:30:05 SetIntensity u 80"_s, u"08:30:05 Switch b true"_s};
    QCOMPARE(TakeRequests(), expected);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedAtLoadsTest::APlaylistBetweenTwoLoadsIsJoined()
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

void MissedAtLoadsTest::APlaylistThatALoadCannotJoinAnyMoreIsMissed()
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

// The stop of the message holds the load.
void MissedAtLoadsTest::WhatPassesWhileALoadIsMadeIsMissed()
{
    StartBefore(30'000, {"08:29:50 PlayMessage|gong.mp3", "08:30:00 Volume|1"});
    Pass(29);
    AnswerAfter(SOUND_TIMEOUT_MS, "StopPlay");
    LoadAnew(RELOAD);
    Pass(6);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 2, "08:30:00", LOADED)});
}

void MissedAtLoadsTest::AStopInTheSecondOfAStartThatIsHeldUpTellsNothing()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_ms(1500);
    LoadAnew(ENABLING);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedAtLoadsTest::ALoadInTheVerySecondOfAStartTakesIt()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_s(1);
    CheckFar();
    LoadAnew(RELOAD);
    Pass(30);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", LOADED)});
}

void MissedAtLoadsTest::ALoadAfterTheClockWasPutBackTakesNothingToCome()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(29);
    Time().Advance_s(1);
    CheckFar();
    Time().Step_s(-20);
    LoadAnew(RELOAD);
    Pass(40);
    QCOMPARE(TakeRequests(), QStringList{u"08:30:00 SetMasterVolume d 1"_s});
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedAtLoadsTest::NoPassTellsOfAScheduleThatWent()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(20);
    QCOMPARE(Engine().SetEnabled(false), 0);
    Pass(20);
    EXPECT_LOG(LEVEL_WARNING, {});
}

void MissedAtLoadsTest::WhatALoadForcesAnewIsNotMissed()
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

void MissedAtLoadsTest::AProcessThatStandsStillRightAfterALoad()
{
    for (const auto& [before_ms, cause] : {std::pair(2000, LOADED), {20'000, STOOD_STILL}})
    {
        StartBefore(before_ms, {"08:30:00 Volume|1"});
        Time().Advance_s(60);
        Pass(3);
        EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", cause)});
    }
}

OZNA_CASE(MissedAtLoads, MissedAtLoadsTest)
#include "tst_MissedAtLoads.moc"
