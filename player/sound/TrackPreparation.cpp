#include "sound/TrackPreparation.h"

#include "sound/Frames.h"

namespace
{

// Short tracks follow each other faster than files are opened: so much is held ready, of so many.
constexpr qint64 HELD_AHEAD = Frames::FromMs(2000);
constexpr int MOST_AHEAD = 8;

} // namespace

TrackPreparation::TrackPreparation(QStringList tracks, qint64 gap, Workers& workers)
    : m_tracks(std::move(tracks))
    , m_workers(workers)
    , m_mailbox(std::make_shared<Mailbox>(this))
    , m_feed(std::make_shared<TrackFeed>(gap, Posting(&TrackPreparation::OpenAhead)))
{
    // Nothing is told from within.
    m_mailbox->Post([this] { OpenNext(); });
}

TrackPreparation::~TrackPreparation()
{
    m_mailbox->Close();
}

std::function<void()> TrackPreparation::Posting(void (TrackPreparation::*function)())
{
    return [this, mailbox = m_mailbox, function] { mailbox->Post([this, function] { (this->*function)(); }); };
}

void TrackPreparation::OpenNext()
{
    if (m_next < m_tracks.size())
    {
        const qsizetype track = m_next++;
        Decoder::Events events;
        events.primed = [this, mailbox = m_mailbox, track] { mailbox->Post([this, track] { OnPrimed(track); }); };
        events.ended = Posting(&TrackPreparation::OpenAhead);
        events.failed = [this, mailbox = m_mailbox, track](const QString& reason) {
            mailbox->Post([this, track, reason] { OnFailed(track, reason); });
        };
        m_opening = Decoder::Open(Decoder::Kind::TRACK, m_tracks[track], std::move(events), m_workers);
        return;
    }
    m_feed->SetComplete();
    if (m_primed == 0)
        Q_EMIT Failed(m_reason.isEmpty() ? QStringLiteral("there is nothing to play") : m_reason);
}

void TrackPreparation::OpenAhead()
{
    if (m_opening != nullptr)
        return;
    const TrackFeed::Ahead ahead = m_feed->WhatIsAhead();
    if (ahead.isDecoded && ahead.frames < HELD_AHEAD && ahead.tracks < MOST_AHEAD)
        OpenNext();
}

void TrackPreparation::OnPrimed(qsizetype track)
{
    // It has failed meanwhile, and another is being opened in its place.
    if (track + 1 != m_next || m_opening == nullptr)
        return;
    m_feed->Add(std::move(m_opening));
    m_opening = nullptr;
    if (m_next == m_tracks.size())
        m_feed->SetComplete();
    if (++m_primed == 1)
        Q_EMIT Ready();
    OpenAhead();
}

void TrackPreparation::OnFailed(qsizetype track, const QString& reason)
{
    m_reason = reason;
    Q_EMIT Skipped(m_tracks[track], reason);
    if (track + 1 == m_next && m_opening != nullptr)
    {
        m_opening = nullptr;
        OpenNext();
    }
}
