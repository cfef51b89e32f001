#pragma once

#include <QDBusConnection>
#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QVariantList>

// A client of the player, as the daemon is one.
class PlayerClient final : public QObject
{
    Q_OBJECT
public:
    explicit PlayerClient(QDBusConnection bus);

    static constexpr int BUS_ERROR = -1;

    // Calls a method with those values, and gives back the status of the answer; BUS_ERROR without one.
    [[nodiscard]] int Call(const char* method, const QVariantList& values = {});

    // start: as the daemon writes it, "08:30:00", or empty for at once.
    [[nodiscard]] int PlayFile(const QString& file, const QString& start = {})
    {
        return Call("PlayFile", {file, start});
    }
    [[nodiscard]] int PlayPlaylist(const QString& list, const QString& identifier, uint first = 1,
                                   const QString& start = {})
    {
        return Call("PlayPlaylist", {list, identifier, first, start, false});
    }

    // All signals so far: "PlayFileCompleted gong.wav", "StreamEnabled true".
    [[nodiscard]] const QStringList& Signals() const { return m_signals; }

    // Waits until that signal has come that often in all.
    [[nodiscard]] bool WaitForSignal(const QString& signal, qsizetype times = 1, int timeout_ms = 20'000) const;

    static const QString SERVICE;

private Q_SLOTS:
    void OnPlayFileCompleted(const QString& file);
    void OnPlayPlaylistCompleted(const QString& playlist);
    void OnStreamEnabled(bool enabled);

private:
    QDBusConnection m_bus;
    QStringList m_signals;
};
