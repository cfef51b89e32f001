#include "BusReading.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <dlfcn.h>
#include <limits>

namespace
{

const QString BUS_SERVICE = QStringLiteral("org.freedesktop.DBus");
const QString BUS_PATH = QStringLiteral("/org/freedesktop/DBus");
const QString GET_ID = QStringLiteral("GetId");
constexpr int CATCH_UP_TIMEOUT_MS = 1000;

} // namespace

bool BusReading::NeverPause(const QDBusConnection& bus)
{
    // The bus library is in the process with Qt, but Qt has no word for this, and the library's headers would be a
    // package more for one call.
    using SetLimit = void (*)(void* connection, long bytes);
    const auto setLimit = reinterpret_cast<SetLimit>(::dlsym(RTLD_DEFAULT, "dbus_connection_set_max_received_size"));
    void* const connection = bus.internalPointer();
    if (setLimit == nullptr || connection == nullptr)
        return false;
    setLimit(connection, std::numeric_limits<long>::max());
    return true;
}

bool BusReading::CatchUp(const QDBusConnection& bus)
{
    // Any question will do: messages come in the order in which the bus sent them, and the answer comes last.
    const QDBusMessage question = QDBusMessage::createMethodCall(BUS_SERVICE, BUS_PATH, BUS_SERVICE, GET_ID);
    return bus.call(question, QDBus::Block, CATCH_UP_TIMEOUT_MS).type() == QDBusMessage::ReplyMessage;
}
