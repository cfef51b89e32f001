#pragma once

class QDBusAbstractInterface;

// What is still asked of the peers when the process is to end (see StopRequest): nothing but what the deletion of the
// tasks asks. And a peer that has let one call time out since then is not waited for again, so that an end costs one
// time-out a peer and not one for each task that plays.
class LastCalls final
{
public:
    // Tasks are being deleted for as long as the object lives: what they ask is sent in any case.
    LastCalls();
    ~LastCalls();

    LastCalls(const LastCalls&) = delete;
    LastCalls& operator=(const LastCalls&) = delete;

    // Whether a peer may be asked now.
    [[nodiscard]] static bool MayAsk();

    // The proxy's peer has let a call time out. Before the request to end, that means nothing.
    static void NoteTimeOut(const QDBusAbstractInterface* proxy);

    // Whether the proxy's peer has let a call time out since the request to end.
    [[nodiscard]] static bool IsSilent(const QDBusAbstractInterface* proxy);
};
