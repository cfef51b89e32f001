#include "PlayTask.h"

#include "text/Parameter.h"

namespace
{

constexpr int KEEP_VOLUME = -1;
constexpr int VOLUME_PARAMETER = 1;

} // namespace

PlayTask::PlayTask(TaskType type, const QString& identifier, const QString& volume, Log::Site site)
    : Task(type, identifier)
    , m_volume(Parameter::ToInt(volume, KEEP_VOLUME, [&] {
        NoteWarning(VOLUME_PARAMETER,
                    OZNA_TELL_AT(site, LEVEL_WARNING, "Invalid volume=%s, not used", qPrintable(volume)));
    }))
{
}

void PlayTask::BeginRequest()
{
    WorkBegun().turn.reset();
    static_cast<void>(disconnect(WorkBegun().ended));
    BeginWork();
    if (m_volume >= 0)
        static_cast<void>(SoundManager::SetPlayerVolume(Source(), m_volume));
}

void PlayTask::AtTurn(const PeerReply& reply, Log::Site site, const std::function<bool()>& listen)
{
    const auto begin = [this, site, listen] {
        if (!listen())
            OZNA_LOG_AT(site, LEVEL_WARNING, "Can't wait for the end of %s", qPrintable(GetName()));
    };
    const auto& turn = WorkBegun().turn = reply.Turn();
    if (!turn || !connect(turn.get(), &QDBusPendingCallWatcher::finished, this, begin))
        begin();
}

void PlayTask::EndWait(Log::Site site)
{
    if (!disconnect(WorkBegun().ended))
        OZNA_LOG_AT(site, LEVEL_WARNING, "Can't stop waiting for the end of %s", qPrintable(GetName()));
    m_running = false;
}

bool PlayTask::StopPlayback()
{
    const bool stopped = SoundManager::StopPlay(Source(), m_identifier).IsAccepted();
    if (stopped)
        m_running = false;
    return stopped;
}
