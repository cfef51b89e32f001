// What becomes of the pieces when the output comes and goes.
#include "sound/Frames.h"
#include "sound/GstSoundMaker.h"
#include "sound/WallClock.h"

#include <chrono>

namespace
{

using namespace std::chrono_literals;

// An output that comes back is still of use to a message so late, and to what went on when it left.
constexpr qint64 LATE_MS = 2'000;
constexpr int ABSENCE_S = 60;

QString WithoutOutput(const QString& reason)
{
    return QStringLiteral("no output: ") + reason;
}

} // namespace

void GstSoundMaker::OnOpened()
{
    m_absence.stop();
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
        WatchAbsence();
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
    WatchAbsence();
}

// What was mixed of it has not been heard: it waits again, as a whole.
void GstSoundMaker::TakeBack(Id id, Item& item)
{
    m_mixer->Remove(id);
    LeavePreparation(item);
    item.hasBegun = false;
    ++item.losses;
}

void GstSoundMaker::WatchAbsence()
{
    if (m_absence.isActive())
        return;
    m_absent_s = 0;
    m_absence.start(1s);
}

void GstSoundMaker::EndWithoutOutput()
{
    ++m_absent_s;
    const qint64 now_ms = WallClock::Now_ns() / Frames::NS_PER_MS;
    const auto isTooLate = [this, now_ms](const Item& item) {
        if (item.hasBegun)
            return m_absent_s >= ABSENCE_S;
        if (item.piece.due_ms)
            return *item.piece.due_ms + LATE_MS < now_ms;
        return m_absent_s >= (item.piece.place == Piece::Place::MESSAGE ? LATE_MS / 1000 : ABSENCE_S);
    };
    EndAll(isTooLate, WithoutOutput(QStringLiteral("it has not come back")));
    if (m_items.empty())
        m_absence.stop();
}
