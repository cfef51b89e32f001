#pragma once

#include <QObject>
#include <QString>

class SoundManagerProxy;

// The signals of the sound manager, which the tasks hear from here: the bus library takes its thread twice for each
// connection to a proxy, once to make it and once to end it, and every playback would need one.
// The bus delivers a signal from the moment on at which something is connected to it, which is too late for one that
// comes right behind the answer of a call: so this listens as long as the proxy lives.
class SoundSignals final : public QObject
{
    Q_OBJECT
public:
    // Belongs to proxy. Throws std::runtime_error when it cannot listen.
    explicit SoundSignals(SoundManagerProxy* proxy);

    // The ones that belong to proxy; null when it has none, or is null itself.
    [[nodiscard]] static const SoundSignals* Of(const SoundManagerProxy* proxy);

Q_SIGNALS:
    // As the proxy's.
    void PlayFileCompleted(const QString& name);
    void PlayPlaylistCompleted(const QString& name);
    void StreamEnabled(bool enabled);
};
