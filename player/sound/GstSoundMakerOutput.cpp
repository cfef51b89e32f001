// What becomes of the pieces when the output comes and goes.
#include "sound/Frames.h"
#include "sound/GstSoundMaker.h"
#include "sound/WallClock.h"

namespace
{

QString WithoutOutput(const QString& reason)
{
    return QStringLiteral("no output: ") + reason;
}

} // namespace

void GstSoundMaker::OnOpened()
{
    m_absence.Return();
    std::vector<Id> ids;
    for (auto& [id, item] : m_items)
    {
        item.hadOutput = true;
        ids.push_back(id);
        if (item.preparation == nullptr && item.losses > 0)
            Prepare(id, item);
    }
    for (const Id id : ids)
    {
        if (m_items.contains(id))
            TellReady(id);
    }
}

// What waits keeps waiting for an output that it had; who asks now is told at once.
void GstSoundMaker::OnOutputFailed(const QString& reason)
{
    EndAll([](const Item& item) { return !item.hadOutput; }, WithoutOutput(reason));
    if (!m_items.empty())
        m_absence.Begin();
}

// A message of which a part was heard has had its moment. The others go on where they were.
void GstSoundMaker::OnOutputLost(const QString& reason)
{
    EndAll([](const Item& item) { return item.isHeard && item.piece.place == Piece::Place::MESSAGE; },
           WithoutOutput(reason));
    for (auto& [id, item] : m_items)
    {
        if (item.hasBegun && item.piece.place == Piece::Place::MESSAGE)
            TakeBack(id, item);
    }
    m_absence.Begin();
}

// What was mixed of it has not been heard: it waits again, as a whole.
void GstSoundMaker::TakeBack(Id id, Item& item)
{
    m_mixer->Remove(id);
    LeavePreparation(item);
    item.hasBegun = false;
    ++item.losses;
}

void GstSoundMaker::EndWithoutOutput()
{
    const qint64 now_ms = WallClock::Now_ns() / Frames::NS_PER_MS;
    EndAll([this, now_ms](const Item& item) { return m_absence.IsTooLong(item.piece, item.hasBegun, now_ms); },
           WithoutOutput(QStringLiteral("it has not come back")));
    if (m_items.empty())
        m_absence.End();
}
