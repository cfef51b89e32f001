#include "StopTask.h"

#include "SoundManager.h"

StopTask::StopTask(TaskType type, const char* source, const QString& identifier)
    : Task(type, identifier), m_source(source)
{
}

unsigned int StopTask::GetDelayable_s() const
{
    return 0;
}

bool StopTask::RequestStop(Log::Site site) const
{
    const PeerReply reply = SoundManager::StopPlay(m_source, m_identifier);
    if (reply.IsBusError())
        OZNA_LOG_AT(site, LEVEL_ERROR, "StopPlay(%s) request error: %s\n", m_source, qPrintable(reply.ErrorMessage()));
    else if (reply.Status() != 0)
        OZNA_LOG_AT(site, LEVEL_ERROR, "StopPlay(%s) error: %d\n", m_source, reply.Status());
    else
        OZNA_LOG_AT(site, LEVEL_TRACE, "TASK REQUESTED | StopPlay(%s)", m_source);
    return reply.IsAccepted();
}
