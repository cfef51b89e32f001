#include "sound/SourceWorkers.h"

#include "Log.h"
#include "sound/SoundLog.h"

#include <utility>

namespace
{

// Sources that hang at the same time before the others of their kind wait.
constexpr int WORKERS = 16;
constexpr qint64 BEHIND_MS = 1'500;

} // namespace

SourceWorkers::SourceWorkers()
    : m_files{Workers(WORKERS), "files"}
    , m_live{Workers(WORKERS), "streams and inputs"}
{
}

Workers& SourceWorkers::Of(Piece::Place place)
{
    const bool isOfFiles = place == Piece::Place::MESSAGE || place == Piece::Place::PLAYLIST;
    return (isOfFiles ? m_files : m_live).workers;
}

void SourceWorkers::TellBehind()
{
    TellBehind(m_files);
    TellBehind(m_live);
}

void SourceWorkers::TellBehind(Group& group)
{
    const qint64 behind_ms = group.workers.Behind_ms();
    const bool wasBehind = std::exchange(group.isBehind, behind_ms > BEHIND_MS);
    if (group.isBehind && !wasBehind)
        OZNA_LOG_FROM(SoundLog::ORIGIN, LEVEL_WARNING, "SOURCES HANG | %s: for %lld ms", group.name,
                      static_cast<long long>(behind_ms));
}
