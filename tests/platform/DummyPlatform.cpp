// A second platform, in the place of the device's own libraries: the same four classes, another behaviour.

#include <Configuration.h>
#include <LogInterface.h>
#include <NetworkManagerProxy.h>
#include <SoundManagerProxy.h>

#include <QSettings>

#include <cstdio>

LogInterface::LogInterface(const QString& objectPath)
    : m_maxLevel(4)
{
    std::fprintf(stderr, "dummy log client of %s\n", qPrintable(objectPath));
}

LogInterface::~LogInterface() = default;

void LogInterface::EmitLogString(unsigned int level, const char* text, const char* origin)
{
    if (level <= m_maxLevel)
        std::fprintf(stderr, "dummy %u %s %s\n", level, origin, text);
}

Configuration::Configuration(const char* objectPath)
{
    Q_UNUSED(objectPath)
}

Configuration::~Configuration() = default;

bool Configuration::IsValid() const
{
    return false;
}

QString Configuration::ReadConfigValue(const QString& group, const QString& key, const QString& defaultValue, bool* ok,
                                       bool useDefault)
{
    Q_UNUSED(group)
    Q_UNUSED(key)
    Q_UNUSED(useDefault)
    *ok = false;
    return defaultValue;
}

SoundManagerProxy::SoundManagerProxy(const QString& service, const QString& path, const QDBusConnection& connection,
                                     QObject* parent)
    : QDBusAbstractInterface(service, path, staticInterfaceName(), connection, parent)
{
}

SoundManagerProxy::~SoundManagerProxy() = default;

const char* SoundManagerProxy::staticInterfaceName()
{
    return "com.kestrelix.ozna.dummysoundinterface";
}

NetworkManagerProxy::NetworkManagerProxy(const QString& service, const QString& path, const QDBusConnection& connection,
                                         QObject* parent)
    : QDBusAbstractInterface(service, path, staticInterfaceName(), connection, parent)
{
}

NetworkManagerProxy::~NetworkManagerProxy() = default;

const char* NetworkManagerProxy::staticInterfaceName()
{
    return "com.kestrelix.ozna.dummynetworkinterface";
}
