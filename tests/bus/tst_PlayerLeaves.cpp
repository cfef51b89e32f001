#include "LogRecorder.h"
#include "PeerNames.h"
#include "PlayKinds.h"
#include "Rows.h"
#include "Scheduler.h"
#include "Suite.h"
#include "TasksOnBusTest.h"

#include <PhotoManagerProxy.h>

using namespace Qt::StringLiterals;

// The name of the peer passes on while a task asks or works, and the loop is told later: what counts is who has taken
// the task's request.
class PlayerLeaves : public TasksOnBusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatRanThereHasEnded_data() { AddRows(PLAY_KINDS); }
    void WhatRanThereHasEnded();
    void WhatLeavesAndComesBackHasEndedToo_data() { AddRows(PLAY_KINDS); }
    void WhatLeavesAndComesBackHasEndedToo();
    void WhoLeftInTheMiddleOfTheCallDoesNotDoTheWork_data() { AddRows(PLAY_KINDS); }
    void WhoLeftInTheMiddleOfTheCallDoesNotDoTheWork();
    void WhoDiesBehindItsAnswerHasTakenTheWork_data() { AddRows(PLAY_KINDS); }
    void WhoDiesBehindItsAnswerHasTakenTheWork();
    void AnEarlierOwnerEndsNothing_data() { AddRows(PLAY_KINDS); }
    void AnEarlierOwnerEndsNothing();
    void AnotherPeerEndsNothing_data() { AddRows(PLAY_KINDS); }
    void AnotherPeerEndsNothing();
    void WhatHasEndedEndsOnce_data() { AddRows(PLAY_KINDS); }
    void WhatHasEndedEndsOnce();
    void WhatEndedWithItsPeerStartsAgain_data() { AddRows(PLAY_KINDS); }
    void WhatEndedWithItsPeerStartsAgain();
    void AnEndBeforeItStartsAgainIsAnothers_data() { AddRows(PLAYBACKS); }
    void AnEndBeforeItStartsAgainIsAnothers();
    void APhotoThatNobodyTakesIsNotUnderWay_data() { AddRows(PHOTO_WORK); }
    void APhotoThatNobodyTakesIsNotUnderWay();
    void APhotoThatWasRefusedIsUnderWayUntilItsPeerLeaves_data() { AddRows(PHOTO_WORK); }
    void APhotoThatWasRefusedIsUnderWayUntilItsPeerLeaves();

private:
    // What the row's task is.
    [[nodiscard]] static const PlayKind& Kind() { return Row<PlayKind>(); }
    [[nodiscard]] static std::unique_ptr<Task> Make() { return MakeTask(Kind().name); }
    [[nodiscard]] std::unique_ptr<Task> Start();

    // Deletes the task, with its peer on the bus; what was accepted and has told no end is stopped.
    void Delete(std::unique_ptr<Task> task);

    // The task's peer leaves: what is under way there ends, with a record, or nothing is.
    void Leave(bool isUnderWay = true);
    void ComeBack();
    void ExpectEnd(bool isUnderWay = true);
};

std::unique_ptr<Task> PlayerLeaves::Start()
{
    std::unique_ptr<Task> task = Make();
    if (!task->Run())
        qFatal("not accepted");
    HandleAll();
    LogRecorder::Clear();
    return task;
}

void PlayerLeaves::Delete(std::unique_ptr<Task> task)
{
    Device().SetPresent(Kind().Peer(), true);
    Device().Forget();
    task.reset();
    QCOMPARE(Device().Calls(), Kind().stop ? QStringList{Kind().Stop().Call()} : QStringList());
}

void PlayerLeaves::ExpectEnd(bool isUnderWay)
{
    HandleAll();
    EXPECT_LOG(2, (ToLines(isUnderWay ? Kind().Start().EndedWithPeer() : QStringList())));
}

void PlayerLeaves::Leave(bool isUnderWay)
{
    Device().SetPresent(Kind().Peer(), false);
    ExpectEnd(isUnderWay);
}

void PlayerLeaves::ComeBack()
{
    Device().SetPresent(Kind().Peer(), true);
    HandleAll();
}

void PlayerLeaves::WhatRanThereHasEnded()
{
    auto task = Start();
    QVERIFY(task->IsRunning());
    Leave();
    QVERIFY(!task->IsRunning());
    // There may be something to be stopped, for all the task knows.
    QVERIFY(task->m_running);
    Delete(std::move(task));
}

void PlayerLeaves::WhatLeavesAndComesBackHasEndedToo()
{
    auto task = Start();
    Leave();
    ComeBack();
    ExpectEnd(false);
    QVERIFY(!task->IsRunning());
    Delete(std::move(task));
}

void PlayerLeaves::WhoLeftInTheMiddleOfTheCallDoesNotDoTheWork()
{
    SimulatorProcess& second = StartSecond();
    second.StandBy(Kind().Peer());
    Device().AnswerAndLeave(Kind().Method(), 0);
    auto task = Make();
    QVERIFY(task->Run());
    LogRecorder::Clear();
    ExpectEnd();
    QVERIFY(!task->IsRunning());
    second.SetPresent(Kind().Peer(), false);
    Delete(std::move(task));
}

void PlayerLeaves::WhoDiesBehindItsAnswerHasTakenTheWork()
{
    Device().AnswerAndDie(Kind().Method(), 0);
    auto task = Make();
    QVERIFY(task->Run());
    QVERIFY(task->IsRunning());
    LogRecorder::Clear();
    QVERIFY(Bus().WaitForService(u"com.kestrelix.ozna.simulator"_s, false));
    ExpectEnd();
    QVERIFY(!task->IsRunning());
    task.reset();
    // Nobody is there to be asked to stop it.
    LogRecorder::Clear();
}

void PlayerLeaves::AnEarlierOwnerEndsNothing()
{
    SimulatorProcess& second = StartSecond();
    second.StandBy(Kind().Peer());
    auto task = Make();
    // The loop is not told of it before the successor has answered.
    Device().SetPresent(Kind().Peer(), false);
    QVERIFY(task->Run());
    ExpectEnd(false);
    QVERIFY(task->IsRunning());
    second.SetPresent(Kind().Peer(), false);
    ExpectEnd();
    QVERIFY(!task->IsRunning());
    Delete(std::move(task));
}

void PlayerLeaves::AnotherPeerEndsNothing()
{
    auto task = Start();
    for (const auto& [peer, object] : PEER_NAMES)
        Device().SetPresent(peer, Kind().Peer() == peer);
    ExpectEnd(false);
    QVERIFY(task->IsRunning());
    // Taken down in order, and with their proxies.
    Leave();
    Delete(std::move(task));
}

void PlayerLeaves::WhatHasEndedEndsOnce()
{
    auto task = Start();
    Device().Emit(Kind().End().name, Kind().End().values, qstrcmp(Kind().name, "series") == 0 ? 3 : 1);
    HandleAll();
    QVERIFY(!task->IsRunning());
    QVERIFY(!task->m_running);
    Leave(false);
}

void PlayerLeaves::WhatEndedWithItsPeerStartsAgain()
{
    auto task = Start();
    for (int day = 0; day < 3; ++day)
    {
        Leave();
        ComeBack();
        QVERIFY(task->Run());
        HandleAll();
        QVERIFY(task->IsRunning());
        LogRecorder::Clear();
    }
    // One connection, one end.
    Leave();
    Delete(std::move(task));
}

void PlayerLeaves::AnEndBeforeItStartsAgainIsAnothers()
{
    auto task = Start();
    Leave();
    ComeBack();
    Device().EmitThenAnswer(Kind().Method(), Kind().End().name, Kind().End().values);
    QVERIFY(task->Run());
    HandleAll();
    QVERIFY(task->IsRunning());
    Delete(std::move(task));
}

void PlayerLeaves::APhotoThatNobodyTakesIsNotUnderWay()
{
    Leave(false);
    auto task = Make();
    QVERIFY(!task->Run());
    LogRecorder::Clear();
    QVERIFY(!task->IsRunning());
    QVERIFY(task->m_running);
    ComeBack();
    Leave(false);
    ComeBack();
    QVERIFY(task->Run());
    QVERIFY(task->IsRunning());
    LogRecorder::Clear();
    Leave();
}

void PlayerLeaves::APhotoThatWasRefusedIsUnderWayUntilItsPeerLeaves()
{
    constexpr int SHORT_TIMEOUT_MS = 100;
    Device().AnswerStatus(Kind().Method(), 2, 0, 1);
    Device().AnswerError(Kind().Method(), "out of order", 1);
    Device().AnswerNever(Kind().Method(), 1);
    for (const char* refusal : {"refused", "failed", "not answered"})
    {
        if (qstrcmp(refusal, "not answered") == 0)
            Scheduler::m_photoManProxy->setTimeout(SHORT_TIMEOUT_MS);
        auto task = Make();
        QVERIFY2(!task->Run(), refusal);
        HandleAll();
        QVERIFY2(task->IsRunning(), refusal);
        LogRecorder::Clear();
        Leave();
        QVERIFY2(!task->IsRunning(), refusal);
        ComeBack();
    }
}

OZNA_CASE(PlayerLeaves, PlayerLeaves)
#include "tst_PlayerLeaves.moc"
