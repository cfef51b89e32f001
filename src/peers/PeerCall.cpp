#include "PeerCall.h"

#include "Clock.h"
#include "LastCalls.h"
#include "PeerWaits.h"
#include "process/BusPause.h"
#include "process/Lifesign.h"

#include <QDBusAbstractInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <memory>

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

// How long a call may take, with a little for the way.
std::int64_t Longest_ms(const QDBusAbstractInterface& proxy)
{
    constexpr std::int64_t LIBRARY_TIMEOUT_MS = 25'000; // where the proxy has none
    constexpr std::int64_t WAY_MS = 1000;
    return (proxy.timeout() > 0 ? proxy.timeout() : LIBRARY_TIMEOUT_MS) + WAY_MS;
}

struct Request
{
    QDBusPendingCall call;
    std::shared_ptr<const QDBusPendingCallWatcher> turn;
};

// The library posts the watcher's signal among those of the bus, in the order of the bus, also while this thread waits:
// but only when the watcher is there before the answer, and on a busy processor the answer may come first.
Request Ask(QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments)
{
    const BusPause pause(proxy->connection());
    const QDBusPendingCall call = proxy->asyncCallWithArgumentList(method, arguments);
    return {call, std::make_shared<const QDBusPendingCallWatcher>(call)};
}

PeerReply OverTheBus(QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments)
{
    if (std::ranges::any_of(arguments, IsTooLong))
        return PeerReply::Failed(QStringLiteral("Argument too long"));
    Request request = Ask(proxy, method, arguments);
    if (LastCalls::IsSilent(proxy))
        return PeerReply::Failed(QStringLiteral("Not waited for"));
    // Not that of the watcher, which would say finished at once.
    request.call.waitForFinished();
    // Many peers that are slow one after the other may take longer than the watchdog waits, and nothing hangs.
    Lifesign::Give();
    if (IsTimeOut(request.call.reply()))
        LastCalls::NoteTimeOut(proxy);
    return PeerReply(request.call.reply(), request.turn);
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
        // What is beyond the time-out, the process stood still.
        PeerWaits::Note(proxy->service(), begin_ms, std::min(Clock::Uptime_ms(), begin_ms + Longest_ms(*proxy)));
    return reply;
}

void PeerCall::SetTransport(Transport transport)
{
    CurrentTransport() = transport ? std::move(transport) : OverTheBus;
}
