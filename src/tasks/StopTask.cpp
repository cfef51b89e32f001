#include "StopTask.h"

#include "peers/SoundManager.h"

StopTask::StopTask(TaskType type, const char* source, const QString& identifier)
    : PunctualTask(type, identifier)
    , m_source(source)
{
}

bool StopTask::RequestStop(Log::Site site) const
{
    return SoundManager::StopPlay(m_source, m_identifier)
        .Report(
            [&](const char* error) {
                OZNA_LOG_AT(site, LEVEL_ERROR, "StopPlay(%s) request error: %s\n", m_source, error);
            },
            [&](int status) { OZNA_LOG_AT(site, LEVEL_ERROR, "StopPlay(%s) error: %d\n", m_source, status); },
            [&] { OZNA_LOG_AT(site, LEVEL_TRACE, "TASK REQUESTED | StopPlay(%s)", m_source); });
}
