#include "Clock.h"
#include "DaemonProcess.h"
#include "FakeTime.h"
#include "PlayerTest.h"
#include "Suite.h"

#include <QDate>
#include <QTimer>

#include <csignal>
#include <cstdlib>

using namespace Qt::StringLiterals;

// The daemon itself asks: it takes the end of any message for the end of all, and asks anew for what has not begun.
class tst_PlayerWithDaemon final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void AnEndWhileTheNextOneWaitsIsNoSecondSound();
    void AStopWhileTheNextOneWaitsIsNoEndOfIt();
    void WhatEndsAtOnceIsHeardOfByTheDaemon();
    void AMessagesVolumeIsItsOwn();
    void ALateStartIsInTheRightTrack();
    void AStreamOfTwoLinesHasNoGapAndEndsForEach();

private:
    inline static const QDate MONDAY{2024, 1, 15};

    // Starts the daemon that many seconds before 08:30:00, with a schedule of these tasks, "08:30:00
    // PlayMessage|gong.wav".
    void Start(int before_s, const QStringList& tasks);
    // Has a piece begin at its moment, and end after a while.
    void PlayPieces(int length_ms);
    void Follow(qsizetype piece, int length_ms);

    // How often the daemon's log has a record that begins with that.
    [[nodiscard]] qsizetype Count(const QString& begin) { return m_daemon->Log().filter(begin).size(); }
    [[nodiscard]] qint64 Now_ms() const { return m_time->Now().toMSecsSinceEpoch(); }
    [[nodiscard]] bool WaitForTime(QTime time)
    {
        return WaitUntil([&] { return m_time->Now() >= QDateTime(MONDAY, time, Qt::UTC); });
    }

    std::optional<FakeTime> m_time;
    std::optional<DaemonProcess> m_daemon;
    QStringList m_sounds; // "1 began 08:30:00", "1 ended"
    qsizetype m_followed = 0;
};

void tst_PlayerWithDaemon::init()
{
    PlayerTest::init();
    m_time.emplace();
    Clock::SetSource([this] { return Now_ms(); });
    m_daemon.emplace(u"ozna-scheduler-local"_s);
    m_daemon->Environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, Bus().Address());
    m_daemon->Environment().insert(u"OZNA_DATA_DIR"_s, Path({}));
    m_daemon->Environment().insert(u"OZNA_CONFIG_FILE"_s, Path(u"ozna.ini"_s));
    m_time->Apply(m_daemon->Environment());
    Write(u"media/gong.wav"_s);
    Write(u"media/bye.wav"_s);
    m_sounds.clear();
    m_followed = 0;
}

void tst_PlayerWithDaemon::cleanup()
{
    const QStringList unexpected = m_daemon->Take(2);
    m_daemon.reset();
    Clock::SetSource({});
    m_time.reset();
    PlayerTest::cleanup();
    QCOMPARE(unexpected.join(u'\n'), QString());
}

void tst_PlayerWithDaemon::Start(int before_s, const QStringList& tasks)
{
    QByteArray schedule;
    for (const QString& task : tasks)
        schedule += "1111111|" + task.toUtf8().replace(' ', "|*|*|*|||") + '\n';
    Write(u"schedule/schedule.csv"_s, schedule);
    m_time->Set(QDateTime(MONDAY, {8, 30}, Qt::UTC).addSecs(-before_s));
    Sound().BeReady();
    m_daemon->Start();
    QVERIFY(m_daemon->WaitForLog(u"4 [Scheduler.cpp] Schedule started"_s));
}

void tst_PlayerWithDaemon::PlayPieces(int length_ms)
{
    while (m_followed < Sound().Pieces().size())
        Follow(m_followed++, length_ms);
}

void tst_PlayerWithDaemon::Follow(qsizetype piece, int length_ms)
{
    const auto id = static_cast<SoundMaker::Id>(piece + 1);
    const std::optional<qint64> due_ms = Sound().Pieces()[piece].due_ms;
    const qint64 wait_ms = due_ms ? std::max<qint64>(*due_ms - Now_ms(), 0) : 0;
    QTimer::singleShot(wait_ms, Qt::PreciseTimer, &Sound(), [this, id, length_ms] {
        if (Sound().IsStopped(id))
            return;
        m_sounds.append(u"%1 began %2"_s.arg(id).arg(m_time->Now().toUTC().toString(u"hh:mm:ss"_s)));
        Q_EMIT Sound().Started(id, Now_ms());
        QTimer::singleShot(length_ms, Qt::PreciseTimer, &Sound(), [this, id] {
            if (Sound().IsStopped(id))
                return;
            m_sounds.append(u"%1 ended"_s.arg(id));
            Q_EMIT Sound().Ended(id, {});
        });
    });
}

void tst_PlayerWithDaemon::AnEndWhileTheNextOneWaitsIsNoSecondSound()
{
    Start(10, {u"08:30:00 PlayMessage|gong.wav"_s, u"08:30:06 PlayMessage|bye.wav"_s});
    const QString asked = u"TASK START@TIME REQUESTED | PlayMessage: bye.wav"_s;
    QVERIFY(WaitUntil([&] {
        PlayPieces(2000);
        return m_sounds.contains(u"2 ended"_s);
    }));
    QCOMPARE(m_sounds, QStringList({u"1 began 08:30:00"_s, u"1 ended"_s, u"2 began 08:30:06"_s, u"2 ended"_s}));
    QCOMPARE(Sound().Pieces().size(), 2);
    // It did ask again: otherwise this shows nothing.
    QCOMPARE(Count(asked), 2);
    QCOMPARE(Seen(2), QStringList({u"PlayFileCompleted(gong.wav)"_s, u"PlayFileCompleted(bye.wav)"_s}));
    QVERIFY(WaitUntil([&] { return Count(u"TASK COMPLETED | PlayMessage: bye.wav"_s) == 1; }));
}

void tst_PlayerWithDaemon::AStopWhileTheNextOneWaitsIsNoEndOfIt()
{
    Start(10, {u"08:30:02 StopMessage|"_s, u"08:30:06 PlayMessage|bye.wav"_s});
    QVERIFY(WaitUntil([&] {
        PlayPieces(1000);
        return m_sounds.contains(u"2 ended"_s);
    }));
    QCOMPARE(m_sounds, QStringList({u"2 began 08:30:06"_s, u"2 ended"_s}));
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
    QCOMPARE(Sound().Pieces().size(), 2);
    QCOMPARE(Seen(2), QStringList({u"PlayFileCompleted(bye.wav)"_s, u"PlayFileCompleted(bye.wav)"_s}));
}

void tst_PlayerWithDaemon::WhatEndsAtOnceIsHeardOfByTheDaemon()
{
    Start(10, {u"08:30:00 PlayMessage|gong.wav"_s});
    QVERIFY(WaitUntil([&] { return Sound().Pieces().size() == 1; }));
    Q_EMIT Sound().Ended(1, {});
    QVERIFY(m_daemon->WaitForLog(u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: gong.wav"_s));
    static_cast<void>(Seen(1));
}

void tst_PlayerWithDaemon::AMessagesVolumeIsItsOwn()
{
    Start(10, {u"08:30:00 PlayMessage|gong.wav,80"_s, u"08:30:06 PlayMessage|bye.wav,30"_s});
    QVERIFY(WaitUntil([&] {
        PlayPieces(4000);
        return Sound().Pieces().size() == 2;
    }));
    QVERIFY(WaitForTime({8, 30, 1}));
    QCOMPARE(Sound().Pieces()[0].volume, 80);
    QCOMPARE(Sound().Pieces()[1].volume, 30);
    // The first one began, and stayed as loud as it was, though the second one's volume came before that.
    QVERIFY(m_sounds.contains(u"1 began 08:30:00"_s));
    QCOMPARE(Sound().TakeCalls().filter(u"volume 1"_s), QStringList());
}

void tst_PlayerWithDaemon::ALateStartIsInTheRightTrack()
{
    Write(u"playlists/morning"_s, "gong.wav;60\nbye.wav;30\ngong.wav;45\n");
    // 70 s late: the second track has played for 8 s, so the third one is the next.
    Start(-70, {u"08:30:00 PlayPlaylist|morning"_s});
    QVERIFY(WaitUntil([&] { return Sound().Pieces().size() == 1; }));
    QCOMPARE(Sound().Pieces()[0].sources, QStringList(Path(u"media/gong.wav"_s)));
    QVERIFY(!Sound().Pieces()[0].due_ms);
    Q_EMIT Sound().Ended(1, {});
    QVERIFY(m_daemon->WaitForLog(u"4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: morning"_s));
    QCOMPARE(Seen(1), QStringList(u"PlayPlaylistCompleted(morning)"_s));
    // The daemon tells of its own delay.
    const QStringList warnings = m_daemon->Take(2);
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings[0].startsWith(u"2 [Action.cpp] Task PlayPlaylist IsDelayed but still valid"_s),
             qPrintable(warnings[0]));
}

void tst_PlayerWithDaemon::AStreamOfTwoLinesHasNoGapAndEndsForEach()
{
    Write(u"ozna.ini"_s, "[GENERAL]\nServerIp=10.0.0.5\n");
    Start(5, {u"08:30:00 PlayStream|8554/live"_s, u"08:30:02 PlayStream|8554/live,40"_s});
    QVERIFY(WaitUntil([&] { return Count(u"TASK START REQUESTED | PlayStream"_s) == 2; }));
    QCOMPARE(Sound().Pieces().size(), 1);
    // The second line's volume.
    QCOMPARE(Sound().TakeCalls(), QStringList(u"volume 1 40"_s));
    // The first line is free to be due again, the second one's stream goes on.
    QVERIFY(WaitUntil([&] { return Count(u"TASK COMPLETED | PlayStream"_s) == 1; }));
    Q_EMIT Sound().Ended(1, {});
    QVERIFY(WaitUntil([&] { return Count(u"TASK COMPLETED | PlayStream"_s) == 2; }));
    QCOMPARE(Seen(4), QStringList({u"StreamEnabled(true)"_s, u"StreamEnabled(false)"_s, u"StreamEnabled(true)"_s,
                                   u"StreamEnabled(false)"_s}));
}

OZNA_CASE(PlayerWithDaemon, tst_PlayerWithDaemon)

#include "tst_PlayerWithDaemon.moc"
