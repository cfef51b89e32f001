#pragma once

#include <QDBusAbstractInterface>

// Client of the device's network manager, interface "com.kestrelix.ozna.networkinterface".
// Its methods are called by name through the abstract interface.
class NetworkManagerProxy : public QDBusAbstractInterface
{
    Q_OBJECT
public:
    NetworkManagerProxy(const QString& service, const QString& path, const QDBusConnection& connection,
                        QObject* parent);
    ~NetworkManagerProxy() override;

    static const char* staticInterfaceName();
};
