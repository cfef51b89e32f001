#include "BusWatcher.h"

#include <QDBusConnection>

namespace
{

// The bus library itself sends this signal to the process when the connection breaks.
const QString LOCAL_PATH = QStringLiteral("/org/freedesktop/DBus/Local");
const QString LOCAL_INTERFACE = QStringLiteral("org.freedesktop.DBus.Local");
const QString DISCONNECTED = QStringLiteral("Disconnected");

} // namespace

BusWatcher::BusWatcher(std::function<void()> onLost)
    : m_onLost(std::move(onLost))
{
}

BusWatcher::~BusWatcher() = default;

bool BusWatcher::Watch(QDBusConnection bus)
{
    return bus.isConnected() &&
           bus.connect(QString(), LOCAL_PATH, LOCAL_INTERFACE, DISCONNECTED, this, SLOT(OnDisconnected()));
}

void BusWatcher::OnDisconnected()
{
    m_onLost();
}
