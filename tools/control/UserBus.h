#pragma once

#include <QDBusConnection>
#include <QString>
#include <QStringList>

// A connection to the session bus of who runs the tool. Only one may live.
class UserBus final
{
public:
    // Throws ToolError, in words that tell what to do, when there is no bus or it cannot be reached.
    UserBus();
    ~UserBus();

    UserBus(const UserBus&) = delete;
    UserBus& operator=(const UserBus&) = delete;

    [[nodiscard]] const QDBusConnection& Connection() const { return m_connection; }

    // All names that somebody owns on the bus, or would be started for. Throws ToolError when the bus does not answer.
    [[nodiscard]] QStringList ServiceNames() const;

private:
    QDBusConnection m_connection;
};
