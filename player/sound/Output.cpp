#include "sound/Output.h"

#include "Log.h"
#include "sound/Mixer.h"
#include "sound/OutputPipeline.h"
#include "sound/SoundLog.h"

#include <chrono>
#include <stdexcept>

namespace
{

using namespace std::chrono_literals;

// Below the time within which the daemon expects an answer.
constexpr auto OPEN_PATIENCE = 1800ms;
constexpr auto STALLED = 3s;
constexpr auto IDLE = 10min;
constexpr QLatin1String HANGS("it does not answer");
constexpr qint64 HANGS_MS = 1'000;
// A sound server that ends as the output begins to play leaves the library's sink waiting for itself.
constexpr qint64 STUCK_MS = 10'000;
constexpr int FIRST_DELAY_MS = 500;
constexpr int LONGEST_DELAY_MS = 30'000;

} // namespace

Output::Output(QString output, std::shared_ptr<Mixer> mixer)
    : m_output(std::move(output))
    , m_mixer(std::move(mixer))
    , m_mailbox(std::make_shared<Mailbox>(this))
    , m_attempt(std::make_shared<std::atomic<quint64>>(0))
    , m_delay_ms(FIRST_DELAY_MS)
{
    for (QTimer* timer : {&m_patience, &m_retry, &m_idle})
        timer->setSingleShot(true);
    m_patience.setInterval(OPEN_PATIENCE);
    m_progress.setInterval(STALLED);
    m_idle.setInterval(IDLE);
    connect(&m_patience, &QTimer::timeout, this, [this] { Fail(QString(HANGS)); });
    connect(&m_retry, &QTimer::timeout, this, &Output::Open);
    connect(&m_progress, &QTimer::timeout, this, &Output::WatchProgress);
    connect(&m_idle, &QTimer::timeout, this, &Output::Close);
}

Output::~Output()
{
    m_mailbox->Close();
    Release();
}

void Output::Open()
{
    if (m_state != State::CLOSED)
        return;
    m_state = State::OPENING;
    m_retry.stop();
    m_patience.start();
    const quint64 attempt = ++*m_attempt;
    // The device still holds the worker: another attempt would only wait behind.
    const qint64 behind_ms = m_worker.Behind_ms();
    if (behind_ms > HANGS_MS)
        return m_mailbox->Post([this, attempt, behind_ms] {
            Finish(attempt, nullptr, QString(HANGS));
            if (behind_ms > STUCK_MS)
                Q_EMIT Stuck(QString(HANGS));
        });
    const auto file = m_wasOpen ? OutputFile::Begin::AT_THE_END : OutputFile::Begin::ANEW;
    m_worker.Run([output = m_output, file, mixer = m_mixer, mailbox = m_mailbox, attempt, current = m_attempt, this] {
        if (attempt != *current)
            return;
        std::shared_ptr<OutputPipeline> pipeline;
        QString reason;
        try
        {
            pipeline =
                std::make_shared<OutputPipeline>(output, file, mixer, [this, attempt, mailbox](const QString& lost) {
                    mailbox->Post([this, attempt, lost] { Lose(attempt, lost); });
                });
            pipeline->Start();
        }
        catch (const std::exception& error)
        {
            pipeline = nullptr;
            reason = QString::fromLocal8Bit(error.what());
        }
        mailbox->Post([this, attempt, pipeline, reason] { Finish(attempt, pipeline, reason); });
    });
}

void Output::Finish(quint64 attempt, std::shared_ptr<OutputPipeline> pipeline, const QString& reason)
{
    if (attempt != *m_attempt)
        return Discard(std::move(pipeline));
    if (pipeline == nullptr)
        return Fail(reason);
    m_pipeline = std::move(pipeline);
    m_patience.stop();
    m_state = State::OPEN;
    m_wasOpen = true;
    m_delay_ms = FIRST_DELAY_MS;
    m_reason.clear();
    m_mixed = m_mixer->Mixed();
    m_progress.start();
    if (!m_isWanted)
        m_idle.start();
    OZNA_LOG_FROM(SoundLog::ORIGIN, LEVEL_NORMAL, "OUTPUT OPENED | %s", qUtf8Printable(m_output));
    Q_EMIT Opened();
}

void Output::Fail(const QString& reason)
{
    Release();
    // One that is tried again and again is told once.
    const LogLevel level = reason == m_reason ? LEVEL_DETAIL : LEVEL_ERROR;
    m_reason = reason;
    OZNA_LOG_FROM(SoundLog::ORIGIN, level, "OUTPUT NOT OPENED | %s: %s", qUtf8Printable(m_output),
                  qUtf8Printable(reason));
    TryAgainLater();
    Q_EMIT Failed(reason);
}

void Output::Lose(quint64 attempt, const QString& reason)
{
    if (attempt != *m_attempt)
        return;
    Release();
    OZNA_LOG_FROM(SoundLog::ORIGIN, LEVEL_WARNING, "OUTPUT LOST | %s: %s", qUtf8Printable(m_output),
                  qUtf8Printable(reason));
    TryAgainLater();
    Q_EMIT Lost(reason);
}

void Output::TryAgainLater()
{
    if (!m_isWanted)
        return;
    m_retry.start(m_delay_ms);
    m_delay_ms = std::min(m_delay_ms * 2, LONGEST_DELAY_MS);
}

void Output::Release()
{
    ++*m_attempt;
    m_state = State::CLOSED;
    m_patience.stop();
    m_progress.stop();
    m_idle.stop();
    Discard(std::move(m_pipeline));
}

// The pipeline ends in the worker's thread: it may wait for the device.
void Output::Discard(std::shared_ptr<OutputPipeline> pipeline)
{
    if (pipeline != nullptr)
        m_worker.Run([pipeline = std::move(pipeline)]() mutable { pipeline = nullptr; });
}

void Output::SetWanted(bool isWanted)
{
    if (isWanted == m_isWanted)
        return;
    m_isWanted = isWanted;
    if (isWanted)
        m_idle.stop();
    else
        m_retry.stop();
    if (!isWanted && m_state == State::OPEN)
        m_idle.start();
}

// A device that takes no frames any more and tells no error would hold all that plays for ever.
void Output::WatchProgress()
{
    const qint64 mixed = m_mixer->Mixed();
    if (mixed == m_mixed)
        return Lose(*m_attempt, QStringLiteral("it takes no sound any more"));
    m_mixed = mixed;
}

void Output::Close()
{
    Release();
    OZNA_LOG_FROM(SoundLog::ORIGIN, LEVEL_NORMAL, "OUTPUT CLOSED | %s: idle", qUtf8Printable(m_output));
}
