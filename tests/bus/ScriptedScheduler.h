#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

// Stands in the daemon's place on the bus, and answers every call with an error.
class ScriptedScheduler final : public QDBusVirtualObject
{
    Q_OBJECT
public:
    // error: the name of the bus error.
    ScriptedScheduler(QDBusConnection bus, QString error);
    ~ScriptedScheduler() override;

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    [[nodiscard]] QString introspect(const QString& path) const override;

private:
    QDBusConnection m_bus;
    const QString m_error;
};
