#include "PeerCall.h"

#include <QDBusAbstractInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>

namespace
{

PeerReply OverTheBus(QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments)
{
    QDBusPendingCall call = proxy->asyncCallWithArgumentList(method, arguments);
    call.waitForFinished();
    return PeerReply(call.reply());
}

PeerCall::Transport& CurrentTransport()
{
    static PeerCall::Transport transport = OverTheBus;
    return transport;
}

} // namespace

PeerReply PeerCall::Send(QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments)
{
    return CurrentTransport()(proxy, method, arguments);
}

void PeerCall::SetTransport(Transport transport)
{
    CurrentTransport() = transport ? std::move(transport) : OverTheBus;
}
