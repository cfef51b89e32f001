#include "NetworkManagerProxy.h"

NetworkManagerProxy::NetworkManagerProxy(const QString& service, const QString& path, const QDBusConnection& connection,
                                         QObject* parent)
    : QDBusAbstractInterface(service, path, staticInterfaceName(), connection, parent)
{
}

NetworkManagerProxy::~NetworkManagerProxy() = default;

const char* NetworkManagerProxy::staticInterfaceName()
{
    return "com.kestrelix.ozna.networkinterface";
}
