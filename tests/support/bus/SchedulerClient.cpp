#include "SchedulerClient.h"

#include "Wait.h"

const QString SchedulerClient::SERVICE = QStringLiteral("com.kestrelix.ozna.scheduler");
const QString SchedulerClient::PATH = QStringLiteral("/com/kestrelix/ozna/scheduler/schedulerobj");
const QString SchedulerClient::INTERFACE = QStringLiteral("com.kestrelix.ozna.schedulerinterface");

namespace
{

QString Joined(const QVariantList& values)
{
    QStringList texts;
    for (const QVariant& value : values)
        texts.append(value.toString());
    return texts.join(QLatin1Char(','));
}

} // namespace

SchedulerClient::SchedulerClient(QDBusConnection bus)
    : m_bus(std::move(bus))
{
    if (!m_bus.connect(SERVICE, PATH, INTERFACE, QStringLiteral("SchedulingEnabled"), this,
                       SLOT(OnSchedulingEnabled(bool, QString))) ||
        !m_bus.connect(SERVICE, PATH, INTERFACE, QStringLiteral("ExpectedPddAction"), this,
                       SLOT(OnExpectedPddAction(uint, bool))))
        qFatal("cannot listen to the daemon's signals");
}

QString SchedulerClient::Call(const char* method, const QVariantList& arguments)
{
    return CallAt(PATH, INTERFACE, method, arguments);
}

QString SchedulerClient::CallAt(const QString& path, const QString& interface, const char* method,
                                const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(SERVICE, path, interface, QString::fromLatin1(method));
    call.setArguments(arguments);
    const QDBusMessage reply = m_bus.call(call);
    return reply.type() == QDBusMessage::ReplyMessage ? Joined(reply.arguments()) : reply.errorName();
}

QStringList SchedulerClient::TakeSignals()
{
    return std::exchange(m_signals, {});
}

QStringList SchedulerClient::WaitForSignals(qsizetype count)
{
    static_cast<void>(WaitUntil([&] { return m_signals.size() >= count; }));
    return TakeSignals();
}

void SchedulerClient::OnSchedulingEnabled(bool enabled, const QString& filename)
{
    m_signals.append(QStringLiteral("SchedulingEnabled(%1)").arg(Joined({enabled, filename})));
}

void SchedulerClient::OnExpectedPddAction(uint actionId, bool enable)
{
    m_signals.append(QStringLiteral("ExpectedPddAction(%1)").arg(Joined({actionId, enable})));
}
