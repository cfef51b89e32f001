#include "PeerAnswers.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayPlaylist.h"

#include <SoundManagerProxy.h>

#include <optional>

using namespace Qt::StringLiterals;

// Asking for a playlist.
class PlayPlaylistTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void WhatFailsCountsAsPlayed_data() { PeerAnswers::AddRows(); }
    void WhatFailsCountsAsPlayed();
    void AnyEarlierTimeoutComesBack_data() { PeerAnswers::AddRows(); }
    void AnyEarlierTimeoutComesBack();
    void TheTaskRunsWhileItAsks();

private:
    void Begin() override;
    void End() override;

    // Makes the task, and forgets what that logs.
    PlayPlaylist& Make(const QString& volume);

    std::optional<PlayPlaylist> m_task;
};

void PlayPlaylistTest::Begin()
{
    Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s);
}

void PlayPlaylistTest::End()
{
    m_task.reset();
    Scheduler::m_soundManProxy->setTimeout(SOUND_TIMEOUT_MS);
}

PlayPlaylist& PlayPlaylistTest::Make(const QString& volume)
{
    m_task.emplace(u"08:30:00"_s, u"xmas"_s, volume, u"id"_s);
    LogRecorder::Clear();
    return *m_task;
}

void PlayPlaylistTest::WhatFailsCountsAsPlayed()
{
    QFETCH(PeerAnswer, answer);
    PlayPlaylist& task = Make(u"70"_s);
    Bus().Answer("PlayPlaylist", [&answer](const PeerRequest&) { return answer.reply; });
    QCOMPARE(task.Run(), answer.IsAccepted());
    // It is not tried again late.
    QCOMPARE(task.IsCompleted(), !answer.IsAccepted());
    QCOMPARE(Scheduler::m_soundManProxy->timeout(), SOUND_TIMEOUT_MS);
    LogRecorder::Clear();
}

void PlayPlaylistTest::AnyEarlierTimeoutComesBack()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("PlayPlaylist", [&answer](const PeerRequest&) {
        return Scheduler::m_soundManProxy->timeout() == Request::Find("PlayPlaylist", "day").Row().timeout_ms
                   ? answer.reply
                   : PeerReply(99);
    });
    for (const int earlier_ms : {-1, 1, 25000})
    {
        PlayPlaylist& task = Make(u"70"_s);
        Scheduler::m_soundManProxy->setTimeout(earlier_ms);
        QCOMPARE(task.Run(), answer.IsAccepted());
        QCOMPARE(Scheduler::m_soundManProxy->timeout(), earlier_ms);
    }
    LogRecorder::Clear();
}

void PlayPlaylistTest::TheTaskRunsWhileItAsks()
{
    PlayPlaylist& task = Make(u"70"_s);
    task.SetCompleted(true);
    QStringList states;
    const auto note = [&](const PeerRequest& request) {
        states.append(u"%1 %2 %3"_s.arg(request.method).arg(task.IsRunning()).arg(task.IsCompleted()));
        return PeerReply(0);
    };
    Bus().Answer("SetPlayerVolume", note);
    Bus().Answer("PlayPlaylist", note);
    QVERIFY(task.Run());
    QCOMPARE(states, (QStringList{u"SetPlayerVolume 1 0"_s, u"PlayPlaylist 1 0"_s}));
}

OZNA_CASE(PlayPlaylist, PlayPlaylistTest)
#include "tst_PlayPlaylist.moc"
