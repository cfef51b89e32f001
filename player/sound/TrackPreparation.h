#pragma once

#include "sound/Mailbox.h"
#include "sound/Preparation.h"
#include "sound/TrackFeed.h"

#include <QStringList>

// Opens the tracks of a message or of a playlist, one after the other, each while the one before it plays.
class TrackPreparation final : public Preparation
{
    Q_OBJECT
public:
    // gap: in frames.
    TrackPreparation(QStringList tracks, qint64 gap, Workers& workers);
    ~TrackPreparation() override;

    [[nodiscard]] std::shared_ptr<Feed> Frames() const override { return m_feed; }
    [[nodiscard]] QString Reason() const override { return m_reason; }

private:
    void OpenNext();
    void OpenAhead();
    void OnPrimed(qsizetype track);
    void OnFailed(qsizetype track, const QString& reason);
    std::function<void()> Posting(void (TrackPreparation::*function)());

    const QStringList m_tracks;
    Workers& m_workers;
    const std::shared_ptr<Mailbox> m_mailbox;
    const std::shared_ptr<TrackFeed> m_feed;
    qsizetype m_next = 0;
    qsizetype m_primed = 0;
    std::shared_ptr<Decoder> m_opening; // until it is primed
    QString m_reason;
};
