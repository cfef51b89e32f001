#include "sound/LivePreparation.h"

#include "sound/Frames.h"

#include <array>

namespace
{

// When it is tried, behind the break. With RETRY_SILENCE_S for the third it is over within ten seconds.
constexpr std::array<qint64, 3> TRY_AT_MS = {500, 3'500, 7'000};
// One that was heard for so long again has broken anew.
constexpr qint64 HEARD_AGAIN_MS = 10'000;
constexpr int WATCH_MS = 1'000;
// A network tells some breaks by nothing but silence.
constexpr int SILENCE_S = 5;
constexpr int CONNECT_SILENCE_S = 10;
constexpr int RETRY_SILENCE_S = 3;

LiveFeed::Limits LimitsOf(Decoder::Kind kind, const QString& source)
{
    if (kind == Decoder::Kind::CAPTURE)
        return {Frames::FromMs(60), Frames::FromMs(300)};
    // A server that sends as it is asked holds back itself what is not read.
    if (source.startsWith(QLatin1String("http")))
        return {Frames::FromMs(500), 0};
    return {Frames::FromMs(300), Frames::FromMs(1500)};
}

} // namespace

LivePreparation::LivePreparation(Decoder::Kind kind, QString source, Workers& workers)
    : m_kind(kind)
    , m_source(std::move(source))
    , m_workers(workers)
    , m_mailbox(std::make_shared<Mailbox>(this))
    , m_feed(std::make_shared<LiveFeed>(LimitsOf(kind, m_source)))
{
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &LivePreparation::Connect);
    connect(&m_watch, &QTimer::timeout, this, &LivePreparation::Watch);
    // Nothing is told from within.
    m_mailbox->Post([this] { Connect(); });
}

LivePreparation::~LivePreparation()
{
    m_mailbox->Close();
}

void LivePreparation::Connect()
{
    const quint64 attempt = ++m_attempt;
    const auto broken = [this, mailbox = m_mailbox, attempt](const QString& reason) {
        mailbox->Post([this, attempt, reason] { OnBroken(attempt, reason); });
    };
    Decoder::Events events;
    events.primed = [this, mailbox = m_mailbox, attempt] { mailbox->Post([this, attempt] { OnPrimed(attempt); }); };
    events.ended = [this, mailbox = m_mailbox, attempt] { mailbox->Post([this, attempt] { OnEnded(attempt); }); };
    events.failed = broken;
    m_pushed = 0;
    m_silent_s = 0;
    m_decoder = Decoder::Open(m_kind, m_source, std::move(events), m_workers);
    m_watch.start(WATCH_MS);
}

void LivePreparation::OnPrimed(quint64 attempt)
{
    if (attempt != m_attempt)
        return;
    m_heard.start();
    m_reason.clear();
    m_feed->Use(m_decoder);
    if (!std::exchange(m_wasHeard, true))
        Q_EMIT Ready();
}

void LivePreparation::OnBroken(quint64 attempt, const QString& reason)
{
    if (attempt != m_attempt || m_isOver)
        return;
    ++m_attempt;
    m_watch.stop();
    m_decoder = nullptr;
    m_feed->Leave();
    m_reason = reason;
    if (m_tries == 0 || (m_heard.isValid() && m_heard.hasExpired(HEARD_AGAIN_MS)))
    {
        m_tries = 0;
        m_broken.start();
    }
    m_heard.invalidate();
    if (!m_wasHeard || m_tries == TRY_AT_MS.size())
        return GiveUp();
    const qint64 delay_ms = TRY_AT_MS[m_tries++] - m_broken.elapsed();
    m_retry.start(static_cast<int>(std::max<qint64>(0, delay_ms)));
}

void LivePreparation::OnEnded(quint64 attempt)
{
    if (attempt != m_attempt || m_isOver)
        return;
    if (!m_decoder->HasLength())
        return OnBroken(attempt, QStringLiteral("it has ended"));
    m_watch.stop();
    GiveUp();
}

void LivePreparation::Watch()
{
    const FrameQueue& queue = m_decoder->Queue();
    const bool isMoving = queue.Pushed() != m_pushed || queue.IsFull();
    m_pushed = queue.Pushed();
    m_silent_s = isMoving ? 0 : m_silent_s + 1;
    const int patience_s = !m_wasHeard ? CONNECT_SILENCE_S : m_tries > 0 ? RETRY_SILENCE_S : SILENCE_S;
    if (m_silent_s >= patience_s)
        OnBroken(m_attempt, QStringLiteral("nothing comes from it"));
}

void LivePreparation::GiveUp()
{
    m_isOver = true;
    m_feed->End();
    if (!m_wasHeard)
        Q_EMIT Failed(m_reason);
}
