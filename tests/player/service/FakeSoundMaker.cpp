#include "FakeSoundMaker.h"

using namespace Qt::StringLiterals;

SoundMaker::Id FakeSoundMaker::Play(const Piece& piece)
{
    m_pieces.append(piece);
    const Id id = static_cast<Id>(m_pieces.size());
    if (m_isReady)
        QMetaObject::invokeMethod(
            this, [this, id] { Q_EMIT Ready(id); }, Qt::QueuedConnection);
    return id;
}

void FakeSoundMaker::Stop(Id id)
{
    m_calls.append(u"stop %1"_s.arg(id));
    m_stopped.append(id);
    QMetaObject::invokeMethod(
        this, [this, id] { Q_EMIT Ended(id, {}); }, Qt::QueuedConnection);
}

void FakeSoundMaker::SetVolume(Id id, double volume)
{
    m_calls.append(u"volume %1 %2"_s.arg(id).arg(volume));
}
