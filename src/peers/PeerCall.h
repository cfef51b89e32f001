#pragma once

#include "PeerReply.h"

#include <QVariantList>

#include <functional>

class QDBusAbstractInterface;

// The one way a task asks a peer.
class PeerCall
{
public:
    // Sends the call and waits. The proxy may be null where a recorder is set.
    using Transport =
        std::function<PeerReply(QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments)>;

    // Calls method on the proxy's peer with the arguments as they are typed, and blocks until the reply comes or
    // the proxy's time-out is over. A text of more
    // than a million characters is not sent: the call fails as one on the bus does. When the process is to end, only
    // what LastCalls allows is sent, and waited for. Never throws and logs nothing.
    [[nodiscard]] static PeerReply Send(QDBusAbstractInterface* proxy, const QString& method,
                                        const QVariantList& arguments = {});

    // Puts a recorder in the bus's place; an empty transport puts the bus back.
    static void SetTransport(Transport transport);
};
