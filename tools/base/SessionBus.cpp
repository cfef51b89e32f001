#include "SessionBus.h"

#include <QFileInfo>

namespace
{

constexpr const char* BUS_VARIABLE = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* RUNTIME_VARIABLE = "XDG_RUNTIME_DIR";
constexpr const char* NO_BUS = "unix:path=/nonexistent";

const QString BUS_SOCKET = QStringLiteral("/bus"); // of a user's session manager, in the folder of that variable
const QString SOCKET_ADDRESS = QStringLiteral("unix:path=");

QString m_kept; // of the environment

} // namespace

void SessionBus::Hide()
{
    m_kept = qEnvironmentVariable(BUS_VARIABLE);
    qputenv(BUS_VARIABLE, NO_BUS);
}

QString SessionBus::Address()
{
    if (!m_kept.isEmpty())
        return m_kept;
    const QString folder = qEnvironmentVariable(RUNTIME_VARIABLE);
    return !folder.isEmpty() && QFileInfo::exists(folder + BUS_SOCKET) ? SOCKET_ADDRESS + folder + BUS_SOCKET
                                                                       : QString();
}
