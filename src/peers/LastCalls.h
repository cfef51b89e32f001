#pragma once

class QDBusAbstractInterface;

// Which calls are still made once the process is to end (see StopRequest): only those of tasks that are being deleted.
// The daemon does not wait again for a peer that has let a call time out since then, so that the end costs one
// time-out for each peer, not one for each task that plays.
class LastCalls final
{
public:
    // Tasks are being deleted for as long as the object lives: their calls are sent in any case.
    LastCalls();
    ~LastCalls();

    LastCalls(const LastCalls&) = delete;
    LastCalls& operator=(const LastCalls&) = delete;

    // Whether a peer may be called now.
    [[nodiscard]] static bool MayAsk();

    // The proxy's peer has let a call time out. Before the request to end, that means nothing.
    static void NoteTimeOut(const QDBusAbstractInterface* proxy);

    // Whether the proxy's peer has let a call time out since the request to end.
    [[nodiscard]] static bool IsSilent(const QDBusAbstractInterface* proxy);
};
