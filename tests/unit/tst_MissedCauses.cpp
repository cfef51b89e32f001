#include "Log.h"
#include "MissedTest.h"
#include "RequestTable.h"
#include "Suite.h"

using namespace MissedLines;
using namespace Qt::StringLiterals;

// Who or what is told as the cause of a start that has passed.
class MissedCausesTest final : public MissedTest
{
    Q_OBJECT
private Q_SLOTS:
    void AProcessThatStandsStill();
    void ALoopThatWaitsForAPeer();
    void ATaskThatStillWorks();
    void WhatIsHeldUpInItsSecondIsMissedForThePeer();
    void ShortWaitsAddUp();
    void WhatRunsWhileTheClockIsPutForwardHeldItsStart();
    void WhatRanUntilRightBeforeItsStartHeldIt();
    void WhoHeldTheLoopThroughoutIsTheCause();
    void WhoHeldTheLoopUntilTheStartIsTheCause();
    void AClockThatIsPutBackIsNoCause();
    void WhoWasWaitedForLongBeforeIsNoCause();
    void AProcessThatStandsStillInACallDidNotWaitForItsPeer();
    void TheCauseIsThatOfTheLastTimeThatItPasses();
    void WhatRanBeforeTheClockWasPutBackDoesNotHoldTheStart();
    void WhatIsAskedForAheadAsIfADayLateIsNotMissed();
};

void MissedCausesTest::AProcessThatStandsStill()
{
    struct Row
    {
        int before_s; // before the start
        int still_s;
        bool isMissed;
    };
    // What is seen ahead may start up to two seconds late; what is not seen ahead has to be found before its time.
    for (const auto& [before_s, still_s, isMissed] : {Row{2, 4, false}, Row{2, 5, true}, Row{2, 3600, true},
                                                      Row{20, 19, false}, Row{20, 20, true}, Row{20, 3600, true}})
    {
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
}

void MissedCausesTest::ALoopThatWaitsForAPeer()
{
    for (const char* method : {"SetPlayerVolume", "PlayFile"})
        AnswerAfter(SOUND_TIMEOUT_MS, method, PeerReply::Failed(u"Did not receive a reply"_s));
    // The message is asked for 8 s ahead: from two seconds before the volume until four seconds after.
    StartBefore(30'000, {"08:30:06 PlayMessage|gong.mp3,70", "08:30:00 Volume|1", "08:30:30 Volume|2"});
    Pass(60);
    QStringList missed = LogRecorder::Messages(LEVEL_WARNING).filter(u"MISSED"_s);
    LogRecorder::Clear();
    QCOMPARE(missed, QStringList{u"MISSED action: 5 (Volume), line 2, due at 08:30:00: the loop waited for "
                                 u"com.kestrelix.ozna.soundmanager"_s});
    QCOMPARE(TakeRequests().filter(u"SetMasterVolume"_s), QStringList{u"08:30:30 SetMasterVolume d 2"_s});
}

void MissedCausesTest::ATaskThatStillWorks()
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

// A far pass comes in the very moment in which both are due, and the first of them is not answered.
void MissedCausesTest::WhatIsHeldUpInItsSecondIsMissedForThePeer()
{
    AnswerAfter(SOUND_TIMEOUT_MS, "SetMasterVolume", PeerReply::Failed(u"Did not receive a reply"_s));
    StartBefore(30'000, {"08:30:00 Volume|1", "08:30:00 Volume|2"});
    Pass(40);
    QCOMPARE(LogRecorder::Messages(LEVEL_WARNING).filter(u"MISSED"_s),
             QStringList{u"MISSED action: 5 (Volume), line 2, due at 08:30:00: the loop waited for "
                         u"com.kestrelix.ozna.soundmanager"_s});
    LogRecorder::Clear();
}

void MissedCausesTest::ShortWaitsAddUp()
{
    for (const char* method : {"SetPlayerVolume", "PlayFile"})
        AnswerAfter(900, method);
    // Asked for from a second before the volume on, until six seconds after it.
    QByteArrayList lines(4, "08:30:07 PlayMessage|gong.mp3,70");
    StartBefore(30'000, lines << "08:30:00 Volume|1");
    Pass(40);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 5, "08:30:00", "the loop waited for com.kestrelix.ozna.soundmanager")});
}

void MissedCausesTest::WhatRunsWhileTheClockIsPutForwardHeldItsStart()
{
    StartBefore(30'000, {"08:30:00 PlayMessage|gong.mp3"});
    Pass(40);
    Time().Step_s(86400);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(MESSAGE, 1, "08:30:00", STILL_RUNS)});
}

void MissedCausesTest::WhatRanUntilRightBeforeItsStartHeldIt()
{
    StartBefore(30'000, {"08:30:00 PlayMessage|gong.mp3"});
    Pass(39);
    Time().Advance_s(86400 - 10);
    CheckFar();
    EndMessage();
    Pass(6);
    EXPECT_LOG(LEVEL_WARNING, {Missed(MESSAGE, 1, "08:30:00", STILL_RUNS)});
}

// Not who was waited for longer, but not when it mattered.
void MissedCausesTest::WhoHeldTheLoopThroughoutIsTheCause()
{
    AnswerAfter(6000, "TakePhotoStream");
    AnswerAfter(5500, "SetMasterVolume");
    StartBefore(30'000, {"08:29:50 RecordPhoto|5,-1", "08:29:58 Volume|1", "08:30:00 Volume|2"});
    Pass(40);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 3, "08:30:00", "the loop waited for com.kestrelix.ozna.soundmanager")});
}

// It is over in time, but kept the far passes from seeing the start ahead.
void MissedCausesTest::WhoHeldTheLoopUntilTheStartIsTheCause()
{
    AnswerAfter(15'000, "SetMasterVolume");
    StartBefore(30'000, {"08:29:46 Volume|1", "08:30:00 Volume|2"});
    Pass(40);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 2, "08:30:00", "the loop waited for com.kestrelix.ozna.soundmanager")});
}

void MissedCausesTest::AClockThatIsPutBackIsNoCause()
{
    StartBefore(30'000, {"08:30:00 Volume|1"});
    Pass(6);
    Time().Advance_s(60);
    Time().Step_s(-20);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", STOOD_STILL)});
}

void MissedCausesTest::WhoWasWaitedForLongBeforeIsNoCause()
{
    AnswerAfter(SOUND_TIMEOUT_MS, "SetMasterVolume");
    StartBefore(60'000, {"08:29:10 Volume|1", "08:30:00 Volume|2"});
    Pass(30);
    Time().Advance_s(60);
    Pass(3);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 2, "08:30:00", STOOD_STILL)});
}

// It may wait for its time-out at most.
void MissedCausesTest::AProcessThatStandsStillInACallDidNotWaitForItsPeer()
{
    AnswerAfter(3600 * 1000, "SetMasterVolume");
    StartBefore(30'000, {"08:30:00 Volume|1", "09:00:00 Light|0"});
    Pass(60);
    EXPECT_LOG(LEVEL_WARNING, {Missed("0 (Light)", 2, "09:00:00", STOOD_STILL)});
}

void MissedCausesTest::TheCauseIsThatOfTheLastTimeThatItPasses()
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

void MissedCausesTest::WhatRanBeforeTheClockWasPutBackDoesNotHoldTheStart()
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

// A negative duration makes a tolerance beyond any day.
void MissedCausesTest::WhatIsAskedForAheadAsIfADayLateIsNotMissed()
{
    Data().WritePlaylist("opening.mp3;-11\nsong.mp3;60\n", u"odd"_s);
    StartBefore(30'000, {"08:30:00 PlayPlaylist|odd"});
    Pass(60);
    QCOMPARE(TakeRequests(), QStringList{u"08:29:48 PlayPlaylist ssusb odd  1 08:30:00 false"_s});
    EXPECT_LOG(LEVEL_WARNING,
               {"2 [Action.cpp] Task PlayPlaylist IsDelayed but still valid (accumulated delay: 86388 s, "
                "tolerated delay: 4294967287 s)",
                "2 [tasks/PlayPlaylist.cpp] PlayPlaylist can't be prepared as delayed: delay (86388 s) "
                ">= duration (51 s))"});
}

OZNA_CASE(MissedCauses, MissedCausesTest)
#include "tst_MissedCauses.moc"
