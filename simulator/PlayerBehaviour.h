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

    // Starts what a call of PlayFile, PlayPlaylist or PlayStream asks for. It ends its kind's while after the start
    // time that the call carries, or after now when it carries none that is valid or still to come.
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
