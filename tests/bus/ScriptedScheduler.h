#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

// Stands in the daemon's place on the bus: enabled, with schedule.csv. Answers other calls as it is told.
class ScriptedScheduler final : public QDBusVirtualObject
{
    Q_OBJECT
public:
    // error: the name of the bus error that every call but IsEnabled gets; empty: all are answered with the status 0.
    // isMute: IsEnabled gets it, too.
    explicit ScriptedScheduler(QDBusConnection bus, QString error = {}, bool isMute = false);
    ~ScriptedScheduler() override;

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    [[nodiscard]] QString introspect(const QString& path) const override;

private:
    QDBusConnection m_bus;
    const QString m_error;
    const bool m_isMute;
};
