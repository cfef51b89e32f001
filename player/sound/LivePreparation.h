#pragma once

#include "sound/LiveFeed.h"
#include "sound/Mailbox.h"
#include "sound/Preparation.h"

#include <QElapsedTimer>
#include <QTimer>

// Connects to a stream or a capture device. One that breaks is tried three times within ten seconds; one that was never
// heard is not.
class LivePreparation final : public Preparation
{
    Q_OBJECT
public:
    LivePreparation(Decoder::Kind kind, QString source, Workers& workers);
    ~LivePreparation() override;

    [[nodiscard]] std::shared_ptr<Feed> Frames() const override { return m_feed; }
    [[nodiscard]] QString Reason() const override { return m_reason; }

private:
    void Connect();
    void OnPrimed(quint64 attempt);
    void OnEnded(quint64 attempt);
    void OnBroken(quint64 attempt, const QString& reason);
    void Watch();
    void GiveUp();

    const Decoder::Kind m_kind;
    const QString m_source;
    Workers& m_workers;
    const std::shared_ptr<Mailbox> m_mailbox;
    const std::shared_ptr<LiveFeed> m_feed;
    std::shared_ptr<Decoder> m_decoder;
    quint64 m_attempt = 0; // what an earlier one tells is not heard any more
    bool m_wasHeard = false;
    bool m_isOver = false;
    std::size_t m_tries = 0; // since it broke
    QElapsedTimer m_broken;
    QElapsedTimer m_heard; // since the last try
    qint64 m_pushed = 0;   // when it was watched last
    int m_silent_s = 0;
    QString m_reason;
    QTimer m_retry;
    QTimer m_watch;
};
