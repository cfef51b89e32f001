#include "PeerAnswers.h"
#include "RequestTest.h"
#include "Rows.h"
#include "Scheduler.h"
#include "Suite.h"
#include "tasks/PlayMessage.h"
#include "tasks/PlayPlaylist.h"

#include <SoundManagerProxy.h>

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{

// A kind that plays, with the signal that ends it.
struct Player
{
    const char* name;
    const char* request;
    const char* parameters;
    std::function<void(const QString& name)> end;
};

const QList<Player> PLAYERS{
    {"a message", "PlayFile", "gong.mp3",
     [](const QString& name) { Q_EMIT Scheduler::m_soundManProxy->PlayFileCompleted(name); }},
    {"a playlist", "PlayPlaylist", "day",
     [](const QString& name) { Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(name); }},
    {"a stream", "PlayStream", "8554/live",
     [](const QString&) { Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false); }},
};

} // namespace

// What plays, from its request to its end and that of its task.
class PlayEndsTest final : public RequestTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnyEndOfItsKindCompletesIt_data();
    void AnyEndOfItsKindCompletesIt();
    void WithoutAPlaybackNoEndIsHeard_data() { AddRows(PLAYERS); }
    void WithoutAPlaybackNoEndIsHeard();
    void WhatIsAskedForAgainEndsOnce_data() { AddRows(PLAYERS); }
    void WhatIsAskedForAgainEndsOnce();
    void WhatDoesNotPlayIsNotStopped_data() { AddRows(PLAYERS); }
    void WhatDoesNotPlayIsNotStopped();
    void OneEndIsThatOfEveryRunningTask();
    void AMessageDeletedByItsOwnEndIsFine();
    void WithoutATimeNoneIsAskedFor();
    void APlaylistThatFailsCountsAsPlayed_data() { PeerAnswers::AddRows(); }
    void APlaylistThatFailsCountsAsPlayed();
    void APlaylistRunsWhileItAsks();
};

void PlayEndsTest::AnyEndOfItsKindCompletesIt_data()
{
    // player, what has ended, and what is said to have
    Rows<int, QString, QString>::Add({
        {"its own file", 0, u"gong.mp3"_s, u"gong.mp3"_s},
        {"another file", 0, u"other.mp3"_s, u"other.mp3"_s},
        {"no file", 0, u""_s, u""_s},
        {"its own playlist", 1, u"day"_s, u"day"_s},
        {"another playlist", 1, u"easter"_s, u"day"_s},
        {"no playlist", 1, u""_s, u"day"_s},
        {"the stream", 2, u""_s, u"rtsp://10.0.0.5:8554/live"_s},
    });
}

void PlayEndsTest::AnyEndOfItsKindCompletesIt()
{
    const auto& [number, ended, told] = Rows<int, QString, QString>::Current();
    const Player& player = PLAYERS[number];
    const Request request = Request::Find(player.request, player.parameters);
    const std::unique_ptr<Task> task = Make(request);
    const QString record = request.Ended().value(0).section(u": "_s, 0, 0) + u": "_s + told;
    const QSignalSpy completed(task.get(), SIGNAL(TaskCompleted()));
    for (int day = 1; day <= 3; ++day)
    {
        QVERIFY(task->Run());
        EXPECT_REQUESTS(Bus(), {request.Call()});
        LogRecorder::Clear();
        Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(true);
        for (const Player& other : PLAYERS)
        {
            if (&other != &player)
                other.end(ended);
        }
        EXPECT_LOG(9, {});
        QVERIFY(task->IsRunning());
        QCOMPARE(completed.size(), day - 1);
        player.end(ended);
        EXPECT_LOG(9, {LogLine(record)});
        QVERIFY(!task->IsRunning());
        if (const auto* const playlist = qobject_cast<const PlayPlaylist*>(task.get()))
            QVERIFY(playlist->IsCompleted());
        // A further one is somebody else's.
        player.end(ended);
        EXPECT_LOG(9, {});
        QCOMPARE(completed.size(), day);
    }
}

void PlayEndsTest::WithoutAPlaybackNoEndIsHeard()
{
    const Player& player = Row<Player>();
    std::unique_ptr<Task> task = Make(Request::Find(player.request, player.parameters));
    const QSignalSpy completed(task.get(), SIGNAL(TaskCompleted()));
    player.end({});
    EXPECT_LOG(9, {});
    Bus().Answer(player.request, 5);
    QVERIFY(!task->Run());
    LogRecorder::Clear();
    player.end({});
    EXPECT_LOG(9, {});
    QCOMPARE(completed.size(), 0);
    // Nor by a task that is gone.
    Bus().Answer(player.request, 0);
    QVERIFY(task->Run());
    task.reset();
    LogRecorder::Clear();
    player.end({});
    EXPECT_LOG(9, {});
}

// As when the peer that played has left the bus.
void PlayEndsTest::WhatIsAskedForAgainEndsOnce()
{
    const Player& player = Row<Player>();
    const Request request = Request::Find(player.request, player.parameters);
    const std::unique_ptr<Task> task = Make(request);
    const QSignalSpy completed(task.get(), SIGNAL(TaskCompleted()));
    QVERIFY(task->Run());
    QVERIFY(task->Run());
    LogRecorder::Clear();
    player.end(QString::fromLatin1(player.parameters));
    EXPECT_LOG(9, (ToLines(request.Ended())));
    player.end(QString::fromLatin1(player.parameters));
    EXPECT_LOG(9, {});
    QCOMPARE(completed.size(), 1);
}

void PlayEndsTest::WhatDoesNotPlayIsNotStopped()
{
    const Player& player = Row<Player>();
    for (const auto& [hasRun, status] : {std::pair(false, 0), {true, 5}, {true, 0}})
    {
        std::unique_ptr<Task> task = Make(Request::Find(player.request, player.parameters));
        Bus().Answer(player.request, status);
        if (hasRun)
            QCOMPARE(task->Run(), status == 0);
        player.end({});
        LogRecorder::Clear();
        Bus().Clear();
        task.reset();
        EXPECT_REQUESTS(Bus(), {});
        EXPECT_LOG(9, {});
    }
}

void PlayEndsTest::OneEndIsThatOfEveryRunningTask()
{
    const Request request = Request::Find("PlayPlaylist", "day");
    const std::unique_ptr<Task> first = Make(request);
    const std::unique_ptr<Task> second = Make(request);
    const std::unique_ptr<Task> idle = Make(request);
    QVERIFY(first->Run());
    QVERIFY(second->Run());
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"day"_s);
    EXPECT_LOG(9, (ToLines(request.Ended() + request.Ended())));
    QVERIFY(!first->IsRunning());
    QVERIFY(!second->IsRunning());
    QVERIFY(!qobject_cast<const PlayPlaylist*>(idle.get())->IsCompleted());
}

void PlayEndsTest::AMessageDeletedByItsOwnEndIsFine()
{
    auto message = std::make_unique<PlayMessage>(u"08:30:00"_s, u"gong.mp3"_s, u"70"_s);
    QVERIFY(message->Run());
    bool runningWhenTold = true;
    connect(message.get(), &PlayMessage::TaskCompleted, this, [&] {
        runningWhenTold = message->IsRunning();
        message.reset();
    });
    Bus().Clear();
    Q_EMIT Scheduler::m_soundManProxy->PlayFileCompleted(u"gong.mp3"_s);
    QVERIFY(message == nullptr);
    QVERIFY(!runningWhenTold);
    EXPECT_REQUESTS(Bus(), {});
}

// A time that the task cannot read.
void PlayEndsTest::WithoutATimeNoneIsAskedFor()
{
    PlayMessage message(u"8:30:00"_s, u"gong.mp3"_s, u"-1"_s);
    PlayPlaylist playlist(u"8:30:00"_s, u"day"_s, u"-1"_s, u"id"_s);
    LogRecorder::Clear();
    QVERIFY(message.Run());
    QVERIFY(playlist.Run());
    EXPECT_LOG(9, {"9 [tasks/PlayMessage.cpp] TASK START@TIME REQUESTED | PlayMessage: gong.mp3||-1",
                   "4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist...",
                   "4 [tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: day|1||-1"});
    EXPECT_REQUESTS(Bus(), {u"sound.PlayFile ss gong.mp3 "_s, u"sound.PlayPlaylist ssusb day id 1  false"_s});
}

void PlayEndsTest::APlaylistThatFailsCountsAsPlayed()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("PlayPlaylist", [&answer](const PeerRequest&) { return answer.reply; });
    const std::unique_ptr<Task> task = Make(Request::Find("PlayPlaylist", "day"));
    QCOMPARE(task->Run(), answer.IsAccepted());
    // It is not tried again late.
    QCOMPARE(qobject_cast<const PlayPlaylist*>(task.get())->IsCompleted(), !answer.IsAccepted());
    LogRecorder::Clear();
}

void PlayEndsTest::APlaylistRunsWhileItAsks()
{
    PlayPlaylist task(u"08:30:00"_s, u"day"_s, u"70"_s, u"id"_s);
    task.SetCompleted(true);
    QStringList states;
    for (const char* const method : {"SetPlayerVolume", "PlayPlaylist"})
        Bus().Answer(method, [&](const PeerRequest& request) {
            states.append(u"%1 %2 %3"_s.arg(request.method).arg(task.IsRunning()).arg(task.IsCompleted()));
            return PeerReply(0);
        });
    QVERIFY(task.Run());
    QCOMPARE(states, (QStringList{u"SetPlayerVolume 1 0"_s, u"PlayPlaylist 1 0"_s}));
}

OZNA_CASE(PlayEnds, PlayEndsTest)
#include "tst_PlayEnds.moc"
