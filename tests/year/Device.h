#pragma once

#include "PeerRecorder.h"
#include "Requests.h"
#include "peers/PeerReply.h"

#include <QMultiMap>

#include <functional>

// A device that accepts everything and ends what it plays, on a clock of the caller's: see expected-requests.
class Device final
{
public:
    // Takes the place of the recorder's answers. now_ms: in milliseconds since 1970.
    Device(PeerRecorder& bus, std::function<qint64()> now_ms);

    // Sends the signals that are due.
    void Play();

    // When the next signal is due; the greatest number when none is.
    [[nodiscard]] qint64 Next_ms() const;

    // What has been asked for, since the beginning.
    QList<Request> m_requests;

private:
    using Signal = std::function<void()>;

    PeerReply Receive(const PeerRequest& request);
    void Later(qint64 delay_ms, Signal signal);
    void Stop(const QString& source);

    PeerRecorder& m_bus;
    const std::function<qint64()> m_now_ms;
    QMultiMap<qint64, Signal> m_signals; // by when they are due
};
