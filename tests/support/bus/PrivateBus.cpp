#include "PrivateBus.h"

#include "Wait.h"
#include "process/BusReading.h"

#include <QDBusConnectionInterface>
#include <QUuid>

#include <stdexcept>

using namespace Qt::StringLiterals;

PrivateBus::PrivateBus()
    : m_connection(QString())
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(u"dbus-daemon"_s,
                    {u"--nofork"_s, u"--print-address=1"_s, QStringLiteral("--config-file=" OZNA_BUS_CONFIG),
                     u"--address=unix:path=%1/bus"_s.arg(m_folder.path())});
    const bool printed = WaitUntil([this] {
        m_process.waitForReadyRead(WAIT_SLICE_MS);
        return m_process.canReadLine();
    });
    if (!printed)
        throw std::runtime_error("the private bus does not come up");
    m_address = QString::fromUtf8(m_process.readLine()).trimmed();
    m_connection = Connect();
    if (!m_connection.isConnected())
        throw std::runtime_error("the private bus takes no connection");
}

PrivateBus::~PrivateBus()
{
    for (const QString& name : m_connections)
        QDBusConnection::disconnectFromBus(name);
    Kill();
}

QDBusConnection PrivateBus::Connect()
{
    m_connections.append(QUuid::createUuid().toString());
    const QDBusConnection connection = QDBusConnection::connectToBus(m_address, m_connections.last());
    // A test too takes replies of any size.
    if (connection.isConnected() && !BusReading::NeverPause(connection))
        throw std::runtime_error("the private bus has a limit");
    return connection;
}

bool PrivateBus::WaitForService(const QString& name, bool present) const
{
    return WaitUntil([&] {
        const QDBusReply<bool> owned = m_connection.interface()->isServiceRegistered(name);
        return owned.isValid() && owned.value() == present;
    });
}

void PrivateBus::Kill()
{
    m_process.kill();
    m_process.waitForFinished();
}
