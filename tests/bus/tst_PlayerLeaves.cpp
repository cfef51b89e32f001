#include "LogRecorder.h"
#include "Scheduler.h"
#include "Suite.h"
#include "TasksOnBusTest.h"

#include <PhotoManagerProxy.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int SHORT_TIMEOUT_MS = 100;

enum Refusal
{
    REFUSED,
    FAILED,
    NOT_ANSWERED,
};

} // namespace

Q_DECLARE_METATYPE(Refusal)

// The name of the peer passes on while a task asks or works, and the loop is told later: what counts is who has taken
// the task's request.
class PlayerLeaves : public TasksOnBusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatRanThereHasEnded_data() { AddKinds(); }
    void WhatRanThereHasEnded();
    void WhatLeavesAndComesBackHasEndedToo_data() { AddKinds(); }
    void WhatLeavesAndComesBackHasEndedToo();
    void WhoLeftInTheMiddleOfTheCallDoesNotDoTheWork_data() { AddKinds(); }
    void WhoLeftInTheMiddleOfTheCallDoesNotDoTheWork();
    void WhoDiesBehindItsAnswerHasTakenTheWork_data() { AddKinds(); }
    void WhoDiesBehindItsAnswerHasTakenTheWork();
    void AnEarlierOwnerEndsNothing_data() { AddKinds(); }
    void AnEarlierOwnerEndsNothing();
    void AnotherPeerEndsNothing_data() { AddKinds(); }
    void AnotherPeerEndsNothing();
    void WhatHasEndedEndsOnce_data() { AddKinds(); }
    void WhatHasEndedEndsOnce();
    void WhatEndedWithItsPeerStartsAgain_data() { AddKinds(); }
    void WhatEndedWithItsPeerStartsAgain();
    void AnEndBeforeItStartsAgainIsAnothers_data();
    void AnEndBeforeItStartsAgainIsAnothers();
    void APhotoThatNobodyTakesIsNotUnderWay_data();
    void APhotoThatNobodyTakesIsNotUnderWay();
    void APhotoThatWasRefusedIsUnderWayUntilItsPeerLeaves_data();
    void APhotoThatWasRefusedIsUnderWayUntilItsPeerLeaves();

private:
    static void AddKinds();
    [[nodiscard]] static const char* PeerOf(const QString& kind);
    [[nodiscard]] static QVariantList EndOf(const QString& kind);
    [[nodiscard]] static LogLine EndedWithPeer(const QString& kind);
    std::unique_ptr<Task> Start(const QString& kind);
    // Deletes the task, with its peer on the bus; what was accepted and has told no end is stopped.
    void Delete(const QString& kind, std::unique_ptr<Task> task);
    // The task's peer leaves, with a record or without.
    void Leave(const QString& kind, const LogLines& expected);
};

namespace
{

struct Kind
{
    const char* name;
    const char* peer;
    const char* method;
    const char* end;
    const char* shown; // in records
    const char* stop;  // at deletion; empty: none
};

constexpr std::array KINDS{
    Kind{"message", "sound", "sound.PlayFile", "sound.PlayFileCompleted", "PlayMessage: gong.mp3",
         "sound.StopPlay ss file "},
    Kind{"playlist", "sound", "sound.PlayPlaylist", "sound.PlayPlaylistCompleted", "PlayPlaylist: day",
         "sound.StopPlay ss playlist morning"},
    Kind{"stream", "sound", "sound.PlayStream", "sound.StreamEnabled", "PlayStream: rtsp://10.0.0.5:8554/live",
         "sound.StopPlay ss stream "},
    Kind{"photo", "photo", "photo.TakePhoto", "photo.PhotoTaken", "RecordPhoto: interval=0 s, num=1", ""},
    Kind{"series", "photo", "photo.TakePhotoStream", "photo.PhotoTaken", "RecordPhoto: interval=10 s, num=3", ""},
};

const Kind& Find(const QString& name)
{
    return *std::ranges::find_if(KINDS, [&](const Kind& kind) { return name == QLatin1String(kind.name); });
}

} // namespace

void PlayerLeaves::AddKinds()
{
    QTest::addColumn<QString>("kind");
    for (const Kind& kind : KINDS)
        QTest::newRow(kind.name) << QString::fromLatin1(kind.name);
}

const char* PlayerLeaves::PeerOf(const QString& kind)
{
    return Find(kind).peer;
}

QVariantList PlayerLeaves::EndOf(const QString& kind)
{
    if (qstrcmp(PeerOf(kind), "photo") == 0)
        return {0, u"/1.jpg"_s};
    return {kind == "stream"_L1 ? QVariant(false) : QVariant(u"x"_s)};
}

LogLine PlayerLeaves::EndedWithPeer(const QString& kind)
{
    return {QByteArray("2 [Task.cpp] TASK ENDED WITH ITS PEER | ") + Find(kind).shown};
}

std::unique_ptr<Task> PlayerLeaves::Start(const QString& kind)
{
    std::unique_ptr<Task> task = MakeTask(kind);
    if (!task->Run())
        qFatal("not accepted");
    HandleAll();
    LogRecorder::Clear();
    return task;
}

void PlayerLeaves::Delete(const QString& kind, std::unique_ptr<Task> task)
{
    Device().SetPresent(PeerOf(kind), true);
    Device().Forget();
    task.reset();
    const char* const stop = Find(kind).stop;
    const QStringList found = Device().Calls();
    QCOMPARE(found, *stop != '\0' ? QStringList{QString::fromLatin1(stop)} : QStringList());
}

void PlayerLeaves::Leave(const QString& kind, const LogLines& expected)
{
    Device().SetPresent(PeerOf(kind), false);
    HandleAll();
    EXPECT_LOG(2, (expected));
}

void PlayerLeaves::WhatRanThereHasEnded()
{
    QFETCH(QString, kind);
    auto task = Start(kind);
    QVERIFY(task->IsRunning());
    Leave(kind, {EndedWithPeer(kind)});
    QVERIFY(!task->IsRunning());
    // There may be something to be stopped, for all the task knows.
    QVERIFY(task->m_running);
    Delete(kind, std::move(task));
}

void PlayerLeaves::WhatLeavesAndComesBackHasEndedToo()
{
    QFETCH(QString, kind);
    auto task = Start(kind);
    Leave(kind, {EndedWithPeer(kind)});
    Device().SetPresent(PeerOf(kind), true);
    HandleAll();
    EXPECT_LOG(2, {});
    QVERIFY(!task->IsRunning());
    Delete(kind, std::move(task));
}

void PlayerLeaves::WhoLeftInTheMiddleOfTheCallDoesNotDoTheWork()
{
    QFETCH(QString, kind);
    SimulatorProcess& second = StartSecond();
    second.StandBy(PeerOf(kind));
    Device().AnswerAndLeave(Find(kind).method, 0);
    auto task = MakeTask(kind);
    QVERIFY(task->Run());
    LogRecorder::Clear();
    HandleAll();
    EXPECT_LOG(2, {EndedWithPeer(kind)});
    QVERIFY(!task->IsRunning());
    second.SetPresent(PeerOf(kind), false);
    Delete(kind, std::move(task));
}

void PlayerLeaves::WhoDiesBehindItsAnswerHasTakenTheWork()
{
    QFETCH(QString, kind);
    Device().AnswerAndDie(Find(kind).method, 0);
    auto task = MakeTask(kind);
    QVERIFY(task->Run());
    QVERIFY(task->IsRunning());
    LogRecorder::Clear();
    QVERIFY(Bus().WaitForService(u"com.kestrelix.ozna.simulator"_s, false));
    HandleAll();
    EXPECT_LOG(2, {EndedWithPeer(kind)});
    QVERIFY(!task->IsRunning());
    task.reset();
    // Nobody is there to be asked to stop it.
    LogRecorder::Clear();
}

void PlayerLeaves::AnEarlierOwnerEndsNothing()
{
    QFETCH(QString, kind);
    SimulatorProcess& second = StartSecond();
    second.StandBy(PeerOf(kind));
    auto task = MakeTask(kind);
    // The loop is not told of it before the successor has answered.
    Device().SetPresent(PeerOf(kind), false);
    QVERIFY(task->Run());
    HandleAll();
    EXPECT_LOG(2, {});
    QVERIFY(task->IsRunning());
    second.SetPresent(PeerOf(kind), false);
    HandleAll();
    EXPECT_LOG(2, {EndedWithPeer(kind)});
    QVERIFY(!task->IsRunning());
    Delete(kind, std::move(task));
}

void PlayerLeaves::AnotherPeerEndsNothing()
{
    QFETCH(QString, kind);
    auto task = Start(kind);
    for (const char* peer : {"config", "update", "sound", "photo", "light", "freq", "gps", "network"})
    {
        if (qstrcmp(peer, PeerOf(kind)) != 0)
            Device().SetPresent(peer, false);
    }
    HandleAll();
    EXPECT_LOG(2, {});
    QVERIFY(task->IsRunning());
    // Taken down in order, and with their proxies.
    Leave(kind, {EndedWithPeer(kind)});
    Delete(kind, std::move(task));
}

void PlayerLeaves::WhatHasEndedEndsOnce()
{
    QFETCH(QString, kind);
    auto task = Start(kind);
    Device().Emit(Find(kind).end, EndOf(kind), kind == "series"_L1 ? 3 : 1);
    HandleAll();
    QVERIFY(!task->IsRunning());
    QVERIFY(!task->m_running);
    Leave(kind, {});
}

void PlayerLeaves::WhatEndedWithItsPeerStartsAgain()
{
    QFETCH(QString, kind);
    auto task = Start(kind);
    for (int day = 0; day < 3; ++day)
    {
        Leave(kind, {EndedWithPeer(kind)});
        Device().SetPresent(PeerOf(kind), true);
        HandleAll();
        QVERIFY(task->Run());
        HandleAll();
        QVERIFY(task->IsRunning());
        LogRecorder::Clear();
    }
    // One connection, one end.
    Leave(kind, {EndedWithPeer(kind)});
    Delete(kind, std::move(task));
}

void PlayerLeaves::AnEndBeforeItStartsAgainIsAnothers_data()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind : {"message", "playlist", "stream"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void PlayerLeaves::AnEndBeforeItStartsAgainIsAnothers()
{
    QFETCH(QString, kind);
    auto task = Start(kind);
    Leave(kind, {EndedWithPeer(kind)});
    Device().SetPresent(PeerOf(kind), true);
    HandleAll();
    Device().EmitThenAnswer(Find(kind).method, Find(kind).end, EndOf(kind));
    QVERIFY(task->Run());
    HandleAll();
    QVERIFY(task->IsRunning());
    Delete(kind, std::move(task));
}

void PlayerLeaves::APhotoThatNobodyTakesIsNotUnderWay_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("photo") << u"photo"_s;
    QTest::newRow("series") << u"series"_s;
}

void PlayerLeaves::APhotoThatNobodyTakesIsNotUnderWay()
{
    QFETCH(QString, kind);
    Leave(kind, {});
    auto task = MakeTask(kind);
    QVERIFY(!task->Run());
    LogRecorder::Clear();
    QVERIFY(!task->IsRunning());
    QVERIFY(task->m_running);
    Device().SetPresent("photo", true);
    HandleAll();
    Leave(kind, {});
    Device().SetPresent("photo", true);
    HandleAll();
    QVERIFY(task->Run());
    QVERIFY(task->IsRunning());
    LogRecorder::Clear();
    Leave(kind, {EndedWithPeer(kind)});
}

void PlayerLeaves::APhotoThatWasRefusedIsUnderWayUntilItsPeerLeaves_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<Refusal>("how");
    for (const char* kind : {"photo", "series"})
    {
        QTest::addRow("%s, refused", kind) << QString::fromLatin1(kind) << REFUSED;
        QTest::addRow("%s, failed", kind) << QString::fromLatin1(kind) << FAILED;
        QTest::addRow("%s, not answered", kind) << QString::fromLatin1(kind) << NOT_ANSWERED;
    }
}

void PlayerLeaves::APhotoThatWasRefusedIsUnderWayUntilItsPeerLeaves()
{
    QFETCH(QString, kind);
    QFETCH(Refusal, how);
    switch (how)
    {
    case REFUSED: Device().AnswerStatus(Find(kind).method, 2); break;
    case FAILED: Device().AnswerError(Find(kind).method, "out of order"); break;
    case NOT_ANSWERED:
        Device().AnswerNever(Find(kind).method);
        Scheduler::m_photoManProxy->setTimeout(SHORT_TIMEOUT_MS);
        break;
    }
    auto task = MakeTask(kind);
    QVERIFY(!task->Run());
    HandleAll();
    QVERIFY(task->IsRunning());
    LogRecorder::Clear();
    Leave(kind, {EndedWithPeer(kind)});
    QVERIFY(!task->IsRunning());
}

OZNA_CASE(PlayerLeaves, PlayerLeaves)
#include "tst_PlayerLeaves.moc"
