#include "sound/GstSoundMaker.h"

#include <QTimer>

GstSoundMaker::GstSoundMaker(SoundSettings settings)
    : m_settings(std::move(settings))
{
}

GstSoundMaker::~GstSoundMaker() = default;

SoundMaker::Id GstSoundMaker::Play(const Piece& /*piece*/)
{
    const Id id = ++m_last;
    QTimer::singleShot(0, this, [this, id] { Q_EMIT Ended(id, QStringLiteral("no sound is made yet")); });
    return id;
}

void GstSoundMaker::Stop(Id /*id*/) {}
void GstSoundMaker::SetVolume(Id /*id*/, double /*volume*/) {}
void GstSoundMaker::SetMasterVolume(double /*volume*/) {}
