#include "PeerCall.h"

#include "Clock.h"
#include "LastCalls.h"
#include "PeerWaits.h"

#include <QDBusAbstractInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include <algorithm>

namespace
{

// The bus drops the connection of who sends a message beyond its limit; no name, path or address of a device comes near
// this one, in characters.
constexpr qsizetype MAX_TEXT = 1 << 20;

bool IsTooLong(const QVariant& argument)
{
    return argument.metaType() == QMetaType::fromType<QString>() && argument.toString().size() > MAX_TEXT;
}

bool IsTimeOut(const QDBusMessage& reply)
{
    return reply.type() == QDBusMessage::ErrorMessage && QDBusError(reply).type() == QDBusError::NoReply;
}

PeerReply OverTheBus(QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments)
{
    if (std::ranges::any_of(arguments, IsTooLong))
        return PeerReply::Failed(QStringLiteral("Argument too long"));
    QDBusPendingCall call = proxy->asyncCallWithArgumentList(method, arguments);
    if (LastCalls::IsSilent(proxy))
        return PeerReply::Failed(QStringLiteral("Not waited for"));
    call.waitForFinished();
    if (IsTimeOut(call.reply()))
        LastCalls::NoteTimeOut(proxy);
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
    if (!LastCalls::MayAsk())
        return PeerReply::NotSent(QStringLiteral("The scheduler is stopping"));
    const std::int64_t begin_ms = Clock::Uptime_ms();
    PeerReply reply = CurrentTransport()(proxy, method, arguments);
    if (proxy != nullptr)
        PeerWaits::Note(proxy->service(), begin_ms, Clock::Uptime_ms());
    return reply;
}

void PeerCall::SetTransport(Transport transport)
{
    CurrentTransport() = transport ? std::move(transport) : OverTheBus;
}
