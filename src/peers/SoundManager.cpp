#include "SoundManager.h"

#include "PeerCall.h"
#include "PeerOwner.h"
#include "PeerProxies.h"
#include "ProxyTimeout.h"
#include "SoundSignals.h"
#include "text/TimeText.h"

#include <SoundManagerProxy.h>

namespace
{

// Arguments that mean nothing, but belong to the call.
constexpr bool RESERVED_SWITCH = false;
constexpr uint RESERVED_NUMBER = 0;

PeerReply Call(const char* method, const QVariantList& arguments = {})
{
    return PeerCall::Send(PeerProxies::m_soundManProxy, QString::fromLatin1(method), arguments);
}

} // namespace

PeerReply SoundManager::PlayFile(const QString& file, const QTime& startTime)
{
    return Call(PLAY_FILE, {file, FormatTime(startTime)});
}

PeerReply SoundManager::PlayPlaylist(const QString& name, const QString& identifier, int firstTrack,
                                     const QTime& startTime)
{
    const ProxyTimeout patience(PeerProxies::m_soundManProxy, PLAY_PLAYLIST_TIMEOUT_MS);
    return Call(PLAY_PLAYLIST,
                {name, identifier, static_cast<uint>(firstTrack), FormatTime(startTime), RESERVED_SWITCH});
}

PeerReply SoundManager::PlayStream(const QString& uri)
{
    return Call(PLAY_STREAM, {uri, RESERVED_NUMBER});
}

PeerReply SoundManager::PlayAux()
{
    return Call(PLAY_AUX);
}

PeerReply SoundManager::PlayRadioFm()
{
    const ProxyTimeout patience(PeerProxies::m_soundManProxy, PLAY_RADIO_FM_TIMEOUT_MS);
    return Call(PLAY_RADIO_FM);
}

PeerReply SoundManager::SetRadioFmFrequency(double frequencyMHz)
{
    return Call(RADIO_FM_SET_FREQUENCY, {frequencyMHz});
}

PeerReply SoundManager::StopPlay(const char* source, const QString& identifier)
{
    return Call(STOP_PLAY, {QString::fromLatin1(source), identifier});
}

PeerReply SoundManager::SetMasterVolume(int volume)
{
    return Call(SET_MASTER_VOLUME, {static_cast<double>(volume)});
}

PeerReply SoundManager::SetPlayerVolume(const char* source, int volume)
{
    return Call(SET_PLAYER_VOLUME, {QString::fromLatin1(source), static_cast<double>(volume)});
}

PeerReply SoundManager::SetAmplifiers(unsigned char outputs)
{
    return Call(SET_AMPLIFIERS, {QVariant::fromValue(outputs)});
}

const SoundSignals* SoundManager::Signals()
{
    return SoundSignals::Of(PeerProxies::m_soundManProxy);
}

const PeerOwner* SoundManager::Owner()
{
    return PeerOwner::Of(PeerProxies::m_soundManProxy);
}

QTime SoundManager::ParseTime(const QString& text)
{
    return TimeText::ReadTime(text);
}

QString SoundManager::FormatTime(const QTime& time)
{
    return TimeText::WriteTime(time);
}
