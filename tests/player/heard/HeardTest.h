#pragma once

#include "DaemonProcess.h"
#include "Ear.h"
#include "FakeTime.h"
#include "MediaFiles.h"
#include "PlayerClient.h"
#include "PrivateBus.h"
#include "Wait.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

// What a test of the whole player stands on: each test function, and each row, gets a private bus, folders for sounds
// and playlists, an ear, and a player that is not started yet and whose output is that ear. A test fails at its end
// when the player has written an error or a warning that it did not take.
class HeardTest : public QObject
{
    Q_OBJECT
protected:
    // By the count of samples, and on a busy machine too.
    static constexpr double EXACT_MS = 5;

    PrivateBus& Bus() { return *m_bus; }
    DaemonProcess& Player() { return *m_player; }
    [[nodiscard]] PlayerClient& Client() const { return *m_client; }
    [[nodiscard]] Ear& Hearing() const { return *m_ear; }
    [[nodiscard]] QString Path(const QString& name) const { return m_folder->filePath(name); }
    [[nodiscard]] QString MediaPath(const QString& name) const { return Path(QStringLiteral("media/") + name); }

    static void WriteFile(const QString& path, const QByteArray& content);
    // A sound in the media folder.
    void WriteSound(const QString& name, const std::vector<Pcm::Sample>& samples) const;
    // lines: "file.wav;3", each with its line end.
    void WritePlaylist(const QString& name, const QByteArray& lines) const;
    // Further lines of the section [PLAYER].
    void WriteSettings(const QByteArray& lines = {}) const;

    // Puts another player, which is not started yet, in the place of the one that has ended.
    void MakePlayer();

    // Starts the player and waits until it is on the bus.
    [[nodiscard]] bool StartPlayer();

    // Ends the player with SIGTERM; its exit status.
    [[nodiscard]] int StopPlayer();

    // A moment on a full second that far ahead at least; how the daemon writes it.
    [[nodiscard]] static qint64 MomentAhead_ms(qint64 ahead_ms);
    [[nodiscard]] static QString TimeText(qint64 moment_ms);

    // Waits until that many sounds have been heard, ended ones only.
    [[nodiscard]] bool WaitForSounds(size_t count, int timeout_ms = WAIT_MS) const;

    // Runs the event loop so long.
    static void Pause(int time_ms);

    // Takes the errors and warnings so far. Those that hold none of the texts are left for the end of the test.
    void Expect(const QStringList& texts);

    // Called at the end of init.
    virtual void Begin() {}

private Q_SLOTS:
    void init();
    void cleanup();

private:
    std::optional<QTemporaryDir> m_folder;
    std::optional<PrivateBus> m_bus;
    std::unique_ptr<Ear> m_ear;
    std::unique_ptr<DaemonProcess> m_player;
    std::unique_ptr<PlayerClient> m_client;
    QStringList m_unexpected;
};
