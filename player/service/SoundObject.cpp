#include "SoundObject.h"

#include "Amplifiers.h"
#include "PlayerLog.h"
#include "Sources.h"
#include "text/Printable.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace
{

constexpr int LATER = 0; // not sent

int Refuse(Status status, const char* method, const QString& value)
{
    PLAYER_LOG(LEVEL_ERROR, "%s(%s): %s", method, Printable(QStringView(value).left(Log::RECORD_SIZE)).Text(),
               WordsOf(status));
    return static_cast<int>(status);
}

} // namespace

SoundObject::SoundObject(SoundMaker& maker, PlayerSettings settings, const QString& volumeFile, QString amplifiers)
    : m_maker(maker)
    , m_settings(std::move(settings))
    , m_amplifiers(std::move(amplifiers))
    , m_volumes(volumeFile)
    , m_requestVolumes(m_volumes)
    , m_means{maker, m_settings, m_requestVolumes}
    , m_files(m_means)
    , m_playlists(m_means)
    , m_stream(m_means)
    , m_radio(m_means)
    , m_aux(m_means)
{
    connect(&m_files, &TimedPlayer::Completed, this, &SoundObject::PlayFileCompleted);
    connect(&m_playlists, &TimedPlayer::Completed, this, &SoundObject::PlayPlaylistCompleted);
    connect(&m_stream, &StreamPlayer::Enabled, this, &SoundObject::StreamEnabled);
    maker.SetMasterVolume(m_volumes.Of(QString::fromLatin1(Volumes::MASTER)));
}

SoundObject::~SoundObject() = default;

void SoundObject::End()
{
    m_files.End();
    m_playlists.End();
    m_stream.Stop();
    m_radio.SwitchOff();
    m_aux.End();
    m_volumes.Write();
}

Answer SoundObject::AnswerLater()
{
    setDelayedReply(true);
    return [bus = connection(), call = message()](Status status) {
        // Fails only where the bus is gone, and with it who asked.
        if (call.isReplyRequired())
            static_cast<void>(bus.send(call.createReply(static_cast<int>(status))));
    };
}

int SoundObject::PlayFile(const QString& file, const QString& startTime)
{
    m_files.Play(file, startTime, AnswerLater());
    return LATER;
}

int SoundObject::PlayPlaylist(const QString& playlist, const QString& identifier, uint firstTrack,
                              const QString& startTime, bool reserved)
{
    Q_UNUSED(reserved)
    m_playlists.Play({playlist, identifier, firstTrack, startTime}, AnswerLater());
    return LATER;
}

int SoundObject::PlayStream(const QString& uri, uint reserved)
{
    Q_UNUSED(reserved)
    m_stream.Play(uri, AnswerLater());
    return LATER;
}

int SoundObject::PlayRadioFm()
{
    return static_cast<int>(m_radio.SwitchOn());
}

int SoundObject::RadioFmSetFrequency(double frequencyMHz)
{
    return static_cast<int>(m_radio.Tune(frequencyMHz));
}

int SoundObject::PlayAux()
{
    m_aux.Play(AnswerLater());
    return LATER;
}

int SoundObject::StopPlay(const QString& source, const QString& identifier)
{
    const std::optional<Piece::Place> place = PlaceOf(source);
    if (!place)
        return Refuse(Status::BAD_ARGUMENT, SoundManager::STOP_PLAY, source);
    switch (*place)
    {
    case Piece::Place::MESSAGE: m_files.Stop(); break;
    case Piece::Place::PLAYLIST: m_playlists.Stop(identifier); break;
    case Piece::Place::STREAM: m_stream.Stop(); break;
    case Piece::Place::RADIO: m_radio.SwitchOff(); break;
    case Piece::Place::AUX: m_aux.Stop(); break;
    }
    return static_cast<int>(Status::ACCEPTED);
}

int SoundObject::SetPlayerVolume(const QString& source, double volume)
{
    const std::optional<Piece::Place> place = PlaceOf(source);
    if (!place || !SourceAt(*place).hasVolume)
        return Refuse(Status::BAD_ARGUMENT, SoundManager::SET_PLAYER_VOLUME, source);
    if (!Volumes::IsVolume(volume))
        return Refuse(Status::BAD_ARGUMENT, SoundManager::SET_PLAYER_VOLUME, QString::number(volume));
    m_requestVolumes.Set(*place, volume);
    return static_cast<int>(Status::ACCEPTED);
}

int SoundObject::SetMasterVolume(double volume)
{
    if (!Volumes::IsVolume(volume))
        return Refuse(Status::BAD_ARGUMENT, SoundManager::SET_MASTER_VOLUME, QString::number(volume));
    m_volumes.Set(QString::fromLatin1(Volumes::MASTER), volume);
    m_maker.SetMasterVolume(volume);
    return static_cast<int>(Status::ACCEPTED);
}

int SoundObject::SetAmplifiers(unsigned char mask)
{
    return static_cast<int>(Amplifiers::Set(mask, m_settings.amplifiers, m_amplifiers));
}
