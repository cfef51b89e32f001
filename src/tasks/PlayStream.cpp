#include "PlayStream.h"

#include "text/Printable.h"
#include "text/SharedValues.h"

#include <Configuration.h>

namespace
{

const QString CONFIG_GROUP = QStringLiteral("GENERAL");
const QString CONFIG_KEY = QStringLiteral("ServerIp");
const QString DEFAULT_SERVER = QStringLiteral("127.0.0.1");
const QString URI = QStringLiteral("rtsp://%1:%2");

} // namespace

PlayStream::PlayStream(const QString& portAndPath, const QString& volume)
    : PlayTask(TASK_PLAY_STREAM, {}, volume, OZNA_LOG_SITE)
    , m_portAndPath(SharedValues::Of(portAndPath))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | PlayStream: portAndPath=%s (vol=%d)", Printable(m_portAndPath).Text(),
             Volume());
}

PlayStream::~PlayStream()
{
    if (!m_running)
        return;
    OZNA_LOG(LEVEL_NORMAL, "Scheduled Stream %s running: stop it", qPrintable(m_uri));
    if (!StopPlayback())
        OZNA_LOG(LEVEL_WARNING, "Impossible to stop scheduled stream");
}

unsigned int PlayStream::GetDelayable_s() const
{
    return 0;
}

unsigned int PlayStream::GetMostDelayable_s() const
{
    return 0;
}

bool PlayStream::SetUp()
{
    Configuration configuration(Log::ORIGIN);
    if (!configuration.IsValid())
    {
        OZNA_LOG(LEVEL_ERROR, "PlayStream setup error: impossible to retrieve server ip (config not valid)");
        return false;
    }
    bool found = false;
    const QString server = configuration.ReadConfigValue(CONFIG_GROUP, CONFIG_KEY, DEFAULT_SERVER, &found, true);
    if (!found)
    {
        OZNA_LOG(LEVEL_ERROR, "PlayStream setup error: impossible to retrieve server ip (value missing)");
        return false;
    }
    m_uri = URI.arg(server, m_portAndPath);
    OZNA_LOG(LEVEL_DETAIL, "PlayStream setup done: uri=%s", qPrintable(m_uri));
    return true;
}

bool PlayStream::Run()
{
    if (!SetUp())
        return false;
    BeginRequest();
    const PeerReply reply = SoundManager::PlayStream(m_uri);
    m_running = reply.Report(
        [](const char* error) { OZNA_LOG(LEVEL_ERROR, "PlayStream request error: %s\n", error); },
        [](int status) { OZNA_LOG(LEVEL_ERROR, "PlayStream error: %d\n", status); },
        [&] {
            OZNA_LOG(LEVEL_TRACE, "TASK START REQUESTED | PlayStream: %s|%d", qPrintable(m_uri), Volume());
            BeginWait(reply, &SoundSignals::StreamEnabled, this, &PlayStream::OnPlayStreamCompleted, OZNA_LOG_SITE);
        });
    return m_running;
}

void PlayStream::OnPlayStreamCompleted(bool enabled)
{
    if (enabled)
        return;
    OZNA_LOG(LEVEL_NORMAL, "TASK COMPLETED | PlayStream: %s", qPrintable(m_uri));
    EndWait(OZNA_LOG_SITE);
    Q_EMIT TaskCompleted();
}
