#include "RequestVolumes.h"

#include "Sources.h"
#include "Volumes.h"

namespace
{

QString NameOf(Piece::Place place)
{
    return QString::fromLatin1(SourceAt(place).name);
}

} // namespace

RequestVolumes::RequestVolumes(Volumes& volumes)
    : m_volumes(volumes)
{
}

RequestVolumes::~RequestVolumes() = default;

void RequestVolumes::Set(Piece::Place place, double volume)
{
    m_volumes.Set(NameOf(place), volume);
    const auto [entry, isNew] = m_waiting.try_emplace(place);
    QTimer& timer = entry->second;
    if (isNew)
    {
        timer.setSingleShot(true);
        timer.setInterval(FOLLOWS_WITHIN_MS);
        timer.callOnTimeout(this, [this, place] { Q_EMIT Changed(place, Of(place)); });
    }
    timer.start();
}

std::optional<double> RequestVolumes::Take(Piece::Place place)
{
    const auto waiting = m_waiting.find(place);
    if (waiting == m_waiting.end() || !waiting->second.isActive())
        return std::nullopt;
    waiting->second.stop();
    return Of(place);
}

double RequestVolumes::Of(Piece::Place place) const
{
    return m_volumes.Of(NameOf(place));
}
