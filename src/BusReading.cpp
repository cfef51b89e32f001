#include "BusReading.h"

#include <QDBusConnection>

#include <dlfcn.h>
#include <limits>

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
