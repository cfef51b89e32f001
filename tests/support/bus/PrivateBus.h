#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// A message bus of a test's own, gone with the object.
class PrivateBus final
{
public:
    // Throws std::runtime_error when the bus does not come up.
    PrivateBus();
    ~PrivateBus();

    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] QString Address() const { return m_address; }

    // The test's own connection.
    [[nodiscard]] QDBusConnection Connection() const { return m_connection; }

    // Another connection, with a unique name of its own; closed with the bus.
    [[nodiscard]] QDBusConnection Connect();

    // Waits until name has an owner, or none; false when it takes too long.
    [[nodiscard]] bool WaitForService(const QString& name, bool present = true) const;

    // Ends the bus at once, as a crash would.
    void Kill();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QString m_address;
    QDBusConnection m_connection;
    QStringList m_connections;
};
