#include "UserBus.h"

#include "base/SessionBus.h"
#include "base/ToolError.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>

namespace
{

const QString CONNECTION = QStringLiteral("control");

QDBusConnection Connected()
{
    const QString address = SessionBus::Address();
    if (address.isEmpty())
        throw ToolError(QStringLiteral("there is no session bus here: DBUS_SESSION_BUS_ADDRESS is not set\n"
                                       "run the tool in the session of the daemon's user"));
    QDBusConnection bus = QDBusConnection::connectToBus(address, CONNECTION);
    if (!bus.isConnected())
        throw ToolError(QStringLiteral("the session bus at %1 cannot be reached: %2\n"
                                       "run the tool in the session of the daemon's user")
                            .arg(address, bus.lastError().message()));
    return bus;
}

QStringList Names(const QDBusReply<QStringList>& reply)
{
    if (!reply.isValid())
        throw ToolError(QStringLiteral("the session bus: %1").arg(reply.error().message()));
    return reply.value();
}

} // namespace

UserBus::UserBus()
    : m_connection(Connected())
{
}

UserBus::~UserBus()
{
    QDBusConnection::disconnectFromBus(CONNECTION);
}

QStringList UserBus::ServiceNames() const
{
    QDBusConnectionInterface& bus = *m_connection.interface();
    return Names(bus.registeredServiceNames()) + Names(bus.activatableServiceNames());
}
