#include "SimulatedPeer.h"

#include "BrokenMessage.h"
#include "Console.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QTimer>

#include <cstdlib>
#include <stdexcept>

namespace
{

// How a process ends that a script has made fall in the middle of a call.
constexpr int EXIT_SCRIPTED = 70;

const QString STANDARD_INTERFACES = QStringLiteral("org.freedesktop.DBus.");

[[noreturn]] void Fail(const QString& what)
{
    throw std::runtime_error(qPrintable(what));
}

QDBusMessage ErrorFrom(const QDBusMessage& request, const QVariantList& values)
{
    return request.createErrorReply(values.value(0).toString(), values.value(1).toString());
}

} // namespace

SimulatedPeer::SimulatedPeer(const PeerAddress& address, const QDBusConnection& bus, AnswerScript& script)
    : m_address(address)
    , m_description(QString::fromLatin1(address.interface))
    , m_bus(bus)
    , m_script(script)
{
}

SimulatedPeer::~SimulatedPeer() = default;

void SimulatedPeer::Register()
{
    if (!m_bus.registerVirtualObject(QString::fromLatin1(m_address.path), this))
        Fail(QStringLiteral("can't register object %1").arg(QLatin1String(m_address.path)));
}

void SimulatedPeer::SetPresent(bool present)
{
    if (present == m_present)
        return;
    const QString service = QString::fromLatin1(m_address.service);
    if (present && !m_bus.registerService(service))
        Fail(QStringLiteral("can't register service %1, or it has an owner already").arg(service));
    if (!present && !m_bus.unregisterService(service))
        Fail(QStringLiteral("can't give up service %1").arg(service));
    m_present = present;
}

void SimulatedPeer::StandBy()
{
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = m_bus.interface()->registerService(
        QString::fromLatin1(m_address.service), QDBusConnectionInterface::QueueService);
    if (!reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceNotRegistered)
        Fail(QStringLiteral("can't line up for service %1: %2")
                 .arg(QLatin1String(m_address.service), reply.error().message()));
    m_present = true;
}

bool SimulatedPeer::SendSignal(const QString& signal, const QVariantList& values)
{
    QDBusMessage message =
        QDBusMessage::createSignal(QString::fromLatin1(m_address.path), m_description.Name(), signal);
    message.setArguments(values);
    if (!m_bus.send(message))
        return false;
    Q_EMIT SignalSent(m_description.Name(), signal, values);
    return true;
}

QString SimulatedPeer::introspect(const QString& path) const
{
    Q_UNUSED(path)
    return m_description.Xml();
}

bool SimulatedPeer::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    Q_UNUSED(connection)
    if (message.interface().startsWith(STANDARD_INTERFACES))
        return false; // the bus library's business
    // A call may leave the interface out.
    if (!message.interface().isEmpty() && message.interface() != m_description.Name())
    {
        Reply(
            message,
            message.createErrorReply(
                QDBusError::UnknownInterface,
                QStringLiteral("No such interface '%1' at object path '%2'").arg(message.interface(), message.path())));
        return true;
    }
    const InterfaceDescription::Method* const method = m_description.FindMethod(message.member());
    if (method != nullptr && method->signature == message.signature())
        HandleCall(message, *method);
    else
        Reply(message, message.createErrorReply(
                           QDBusError::UnknownMethod,
                           QStringLiteral("No such method '%1' in interface '%2' at object path '%3' (signature '%4')")
                               .arg(message.member(), m_description.Name(), message.path(), message.signature())));
    return true;
}

void SimulatedPeer::HandleCall(const QDBusMessage& message, const InterfaceDescription::Method& method)
{
    const Call call{m_description.Name(), message.member(), message.signature(), message.arguments(),
                    QDateTime::currentDateTime()};
    Q_EMIT Received(call);
    SendLate(call.method);

    const Answer neutral{ANSWER_REPLY, method.neutralReply, 0};
    const Answer answer = m_script.Take(call.interface, call.method, neutral);
    After(answer.delay_ms, [this, message, call, answer] {
        if (answer.signal.isFirst)
            SendBeside(answer.signal);
        After(answer.signal.isFirst ? answer.signal.gap_ms : 0,
              [this, message, call, answer] { Send(message, call, answer); });
    });
}

// At once where there is no delay.
void SimulatedPeer::After(int delay_ms, std::function<void()> action)
{
    if (delay_ms == 0)
        action();
    else
        QTimer::singleShot(delay_ms, Qt::PreciseTimer, this, std::move(action));
}

void SimulatedPeer::Send(const QDBusMessage& request, const Call& call, const Answer& answer)
{
    switch (answer.kind)
    {
    case ANSWER_REPLY: Reply(request, request.createReply(answer.values)); break;
    case ANSWER_ERROR: Reply(request, ErrorFrom(request, answer.values)); break;
    case ANSWER_SILENCE: break;
    case ANSWER_EXIT: Die();
    case ANSWER_LATE: m_late.insert(call.method, request.createReply(answer.values)); break;
    case ANSWER_LEAVE:
        Leave();
        Reply(request, request.createReply(answer.values));
        break;
    case ANSWER_BROKEN:
        if (!BrokenMessage::Send())
            Console::Error(QStringLiteral("can't send a broken message"));
        break;
    case ANSWER_DIE: Reply(request, request.createReply(answer.values)); Die();
    }
    if (!answer.signal.name.isEmpty() && !answer.signal.isFirst)
        After(answer.signal.gap_ms, [this, signal = answer.signal] { SendBeside(signal); });
    if (answer.IsAcceptance())
        Q_EMIT Accepted(call);
}

void SimulatedPeer::SendBeside(const SignalBeside& signal)
{
    if (!SendSignal(signal.name, signal.values))
        Console::Error(QStringLiteral("can't send signal %1.%2").arg(m_description.Name(), signal.name));
}

// No farewell: as a service that crashes. What was sent before a call that has been answered is on the bus: whoever
// steers the device waits for the answer to what made it be called.
void SimulatedPeer::Die()
{
    if (!m_bus.interface()->isServiceRegistered(QString::fromLatin1(m_address.service)).isValid())
        Console::Error(QStringLiteral("the bus does not answer"));
    std::_Exit(EXIT_SCRIPTED);
}

void SimulatedPeer::Leave()
{
    try
    {
        SetPresent(false);
    }
    catch (const std::exception& error)
    {
        Console::Error(QString::fromLocal8Bit(error.what()));
    }
}

void SimulatedPeer::SendLate(const QString& method)
{
    const auto late = m_late.constFind(method);
    if (late == m_late.cend())
        return;
    if (!m_bus.send(*late))
        Console::Error(QStringLiteral("can't answer %1 late: ").arg(method) + m_bus.lastError().message());
    m_late.erase(late);
}

void SimulatedPeer::Reply(const QDBusMessage& request, const QDBusMessage& reply)
{
    if (request.isReplyRequired() && !m_bus.send(reply))
        Console::Error(QStringLiteral("can't answer %1.%2: ").arg(m_description.Name(), request.member()) +
                       m_bus.lastError().message());
}
