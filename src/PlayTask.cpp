#include "PlayTask.h"

#include "Parameter.h"
#include "SoundManager.h"

namespace
{

constexpr int KEEP_VOLUME = -1;

} // namespace

PlayTask::PlayTask(TaskType type, const char* source, const QString& identifier, const QString& volume, Log::Site site)
    : Task(type, identifier)
    , m_source(source)
    , m_volume(Parameter::ToInt(volume, KEEP_VOLUME, [&] {
        OZNA_LOG_AT(site, LEVEL_WARNING, "Invalid volume=%s, not used", qPrintable(volume));
    }))
{
}

void PlayTask::BeginRequest()
{
    m_running = true;
    if (m_volume >= 0)
        static_cast<void>(SoundManager::Call(SoundManager::SET_PLAYER_VOLUME,
                                             {QString::fromLatin1(m_source), static_cast<double>(m_volume)}));
}

bool PlayTask::StopPlayback()
{
    const bool stopped = SoundManager::StopPlay(m_source, m_identifier).IsAccepted();
    if (stopped)
        m_running = false;
    return stopped;
}
