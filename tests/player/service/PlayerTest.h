#pragma once

#include "FakeSoundMaker.h"
#include "LogRecorder.h"
#include "PrivateBus.h"
#include "VirtualClock.h"
#include "Wait.h"
#include "service/PlayerLog.h"
#include "service/SoundObject.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

// What a test of the service stands on: each test function, and each row, gets a private bus with the service, a sound
// maker that does what the test says, folders for media, playlists and outputs, and a client that sees what the bus
// brings, in its order. The clock stands still at noon. A test fails at its end when the log has an error or a warning
// that it did not take.
class PlayerTest : public QObject
{
    Q_OBJECT
protected:
    PlayerTest();
    ~PlayerTest() override;

    FakeSoundMaker& Sound() { return *m_sound; }
    VirtualClock& Time() { return *m_clock; }
    PrivateBus& Bus() { return *m_bus; }
    SoundObject& Service() { return *m_service; }

    // Of the service that the next StartService makes; the folders are set.
    PlayerSettings& Settings() { return m_settings; }
    void StartService();

    [[nodiscard]] QString Path(const QString& name) const { return m_folder.filePath(name); }
    void Write(const QString& name, const QByteArray& content = "sound") const;
    [[nodiscard]] QByteArray Read(const QString& name) const;

    // Calls the service; its status, or -1 with a bus error.
    int Call(const char* method, const QVariantList& arguments = {});

    // Calls it without waiting: the answer comes among what is seen, as "PlayFile: 0".
    void Ask(const char* method, const QVariantList& arguments = {});

    // What the client has seen since the last call of this, answers to Ask and signals: "PlayFileCompleted(gong.wav)".
    // Waits until there is as much as that; a little more is waited for what must not be there.
    [[nodiscard]] QStringList Seen(qsizetype count);

    // "file", or "stream" and so on, "name name @ +5000 80" a piece: the moment in ms from now, the volume.
    [[nodiscard]] QString Shown(qsizetype piece) const;

protected Q_SLOTS:
    void init();
    void cleanup();

private Q_SLOTS:
    void OnFileCompleted(const QString& file);
    void OnPlaylistCompleted(const QString& playlist);
    void OnStreamEnabled(bool enabled);

private:
    QTemporaryDir m_folder;
    std::optional<VirtualClock> m_clock;
    std::optional<PrivateBus> m_bus;
    std::optional<QDBusConnection> m_serviceBus;
    std::optional<FakeSoundMaker> m_sound;
    PlayerSettings m_settings;
    std::unique_ptr<SoundObject> m_service;
    QStringList m_seen;
};
