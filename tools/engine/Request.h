#pragma once

#include "Task.h"

#include <QList>
#include <QString>
#include <QVariantList>

class QDBusAbstractInterface;

// One request of the daemon to a peer, or one announcement of its own.
struct Request
{
    qint64 moment_ms; // since 1970-01-01 00:00:00 UTC
    QString peer;     // the last part of the service's name, as "soundmanager"
    QString method;
    QVariantList arguments;
    int timeout_ms = 0; // how long the daemon waits at most for an answer

    // What the daemon asks of proxy's peer.
    [[nodiscard]] static Request Sent(qint64 moment_ms, const QDBusAbstractInterface& proxy, const QString& method,
                                      const QVariantList& arguments);

    // What the daemon announces itself, for who listens.
    [[nodiscard]] static Request Announcement(qint64 moment_ms, PDD_ACTION action, bool enable);

    // How long the daemon waits at most for the answers to all of them.
    [[nodiscard]] static qint64 Longest_ms(const QList<Request>& requests);

    // `soundmanager PlayFile("gong.mp3", "08:30:00")`
    [[nodiscard]] QString Text() const;

    // The arguments alone, as people write them: texts in quotes, fractions with a point.
    [[nodiscard]] QStringList ArgumentTexts() const;
};
