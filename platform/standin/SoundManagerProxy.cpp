#include "SoundManagerProxy.h"

SoundManagerProxy::SoundManagerProxy(const QString& service, const QString& path, const QDBusConnection& connection,
                                     QObject* parent)
    : QDBusAbstractInterface(service, path, staticInterfaceName(), connection, parent)
{
}

SoundManagerProxy::~SoundManagerProxy() = default;

const char* SoundManagerProxy::staticInterfaceName()
{
    return "com.kestrelix.ozna.soundinterface";
}
