#include "ScriptedScheduler.h"

#include "SchedulerClient.h"

#include <QtGlobal>

ScriptedScheduler::ScriptedScheduler(QDBusConnection bus, QString error, bool isMute)
    : m_bus(std::move(bus))
    , m_error(std::move(error))
    , m_isMute(isMute)
{
    if (!m_bus.registerVirtualObject(SchedulerClient::PATH, this) || !m_bus.registerService(SchedulerClient::SERVICE))
        qFatal("cannot stand in the daemon's place");
}

ScriptedScheduler::~ScriptedScheduler()
{
    m_bus.unregisterObject(SchedulerClient::PATH);
    static_cast<void>(m_bus.unregisterService(SchedulerClient::SERVICE));
}

bool ScriptedScheduler::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    if (message.member() == QStringLiteral("IsEnabled") && !m_isMute)
        return connection.send(message.createReply({0, true, QStringLiteral("schedule.csv")}));
    return connection.send(m_error.isEmpty() ? message.createReply(0)
                                             : message.createErrorReply(m_error, QStringLiteral("scripted")));
}

QString ScriptedScheduler::introspect(const QString& /*path*/) const
{
    return {};
}
