#pragma once

#include "Call.h"

#include <QMap>
#include <QObject>
#include <QVariantList>

#include <functional>

// The sound manager's player: what is played ends after a while, with its completion signal.
class PlayerBehaviour final : public QObject
{
    Q_OBJECT
public:
    // Sends a signal of the sound manager.
    using Send = std::function<void(const QString& signal, const QVariantList& values)>;

    // A kind of thing that can play.
    struct Source;

    explicit PlayerBehaviour(Send send);
    ~PlayerBehaviour() override;

    // Starts the playback of a PlayFile, PlayPlaylist or PlayStream call. It ends a fixed time, by its kind, after the
    // call's start time, or after now if the call has no valid start time to come.
    void Play(const Call& call);

    // Ends what plays of the source that a call of StopPlay names; of playlists only those with the call's identifier,
    // or all when it is empty.
    void Stop(const Call& call);

private:
    struct Playback
    {
        const Source* source;
        QString name;
        QString identifier;
    };

    void End(int id);

    const Send m_send;
    QMap<int, Playback> m_playing;
    int m_lastId = 0;
};
