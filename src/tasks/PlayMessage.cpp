#include "PlayMessage.h"

#include "text/Printable.h"
#include "text/SharedValues.h"

PlayMessage::PlayMessage(const QString& time, const QString& file, const QString& volume)
    : PlayTask(TASK_PLAY_MESSAGE, {}, volume, OZNA_LOG_SITE)
    , m_startTime(SoundManager::ParseTime(time))
    , m_file(SharedValues::Of(file))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | PlayMessage: %s @ %s (vol=%d)", Printable(m_file).Text(),
             Printable(SoundManager::FormatTime(m_startTime)).Text(), Volume());
}

PlayMessage::~PlayMessage()
{
    if (!m_running)
        return;
    OZNA_LOG(LEVEL_NORMAL, "Scheduled Message %s running: stop it", qPrintable(m_file));
    if (!StopPlayback())
        OZNA_LOG(LEVEL_WARNING, "Impossible to stop scheduled file");
}

unsigned int PlayMessage::GetDelayable_s() const
{
    return 0;
}

unsigned int PlayMessage::GetMostDelayable_s() const
{
    return 0;
}

bool PlayMessage::Run()
{
    BeginRequest();
    const PeerReply reply = SoundManager::PlayFile(m_file, m_startTime);
    m_running = reply.Report(
        [](const char* error) { OZNA_LOG(LEVEL_ERROR, "PlayFile request error: %s\n", error); },
        [](int status) { OZNA_LOG(LEVEL_ERROR, "PlayFile error: %d\n", status); },
        [&] {
            OZNA_LOG(LEVEL_TRACE, "TASK START@TIME REQUESTED | PlayMessage: %s|%s|%d", qPrintable(m_file),
                     qPrintable(SoundManager::FormatTime(m_startTime)), Volume());
            BeginWait(reply, &SoundSignals::PlayFileCompleted, this, &PlayMessage::OnPlayFileCompleted, OZNA_LOG_SITE);
        });
    return m_running;
}

void PlayMessage::OnPlayFileCompleted(const QString& file)
{
    OZNA_LOG(LEVEL_NORMAL, "TASK COMPLETED | PlayMessage: %s", qPrintable(file));
    EndWait(OZNA_LOG_SITE);
    Q_EMIT TaskCompleted();
}
