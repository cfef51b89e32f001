#include "BusWatcher.h"

#include <QDBusConnection>

#include <stdexcept>

namespace
{

// The bus library itself sends this signal to the process when the connection breaks.
const QString LOCAL_PATH = QStringLiteral("/org/freedesktop/DBus/Local");
const QString LOCAL_INTERFACE = QStringLiteral("org.freedesktop.DBus.Local");
const QString DISCONNECTED = QStringLiteral("Disconnected");

} // namespace

BusWatcher::BusWatcher(QDBusConnection& bus, std::function<void()> onLost)
    : m_onLost(std::move(onLost))
{
    if (!bus.connect(QString(), LOCAL_PATH, LOCAL_INTERFACE, DISCONNECTED, this, SLOT(OnDisconnected())))
        throw std::runtime_error("bus watcher");
}

BusWatcher::~BusWatcher() = default;

void BusWatcher::OnDisconnected()
{
    m_onLost();
}
