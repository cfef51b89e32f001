#include "SchedulerClient.h"

#include "Wait.h"

using namespace Qt::StringLiterals;

const QString SchedulerClient::SERVICE = u"com.kestrelix.ozna.scheduler"_s;
const QString SchedulerClient::PATH = u"/com/kestrelix/ozna/scheduler/schedulerobj"_s;
const QString SchedulerClient::INTERFACE = u"com.kestrelix.ozna.schedulerinterface"_s;

namespace
{

QString Joined(const QVariantList& values)
{
    QStringList texts;
    for (const QVariant& value : values)
        texts.append(value.toString());
    return texts.join(u',');
}

} // namespace

SchedulerClient::SchedulerClient(QDBusConnection bus)
    : m_bus(std::move(bus))
{
    if (!m_bus.connect(SERVICE, PATH, INTERFACE, u"SchedulingEnabled"_s, this,
                       SLOT(OnSchedulingEnabled(bool, QString))) ||
        !m_bus.connect(SERVICE, PATH, INTERFACE, u"ExpectedPddAction"_s, this, SLOT(OnExpectedPddAction(uint, bool))))
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
    m_signals.append(u"SchedulingEnabled(%1)"_s.arg(Joined({enabled, filename})));
}

void SchedulerClient::OnExpectedPddAction(uint actionId, bool enable)
{
    m_signals.append(u"ExpectedPddAction(%1)"_s.arg(Joined({actionId, enable})));
}
