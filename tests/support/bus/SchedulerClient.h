#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantList>

// A client of the daemon's exported interface.
class SchedulerClient final : public QObject
{
    Q_OBJECT
public:
    explicit SchedulerClient(QDBusConnection bus);

    // Calls method and gives back the values of the reply, "0,true,schedule.csv", or the name of the bus error.
    QString Call(const char* method, const QVariantList& arguments = {});

    // The same with an interface and an object of the caller's choice.
    QString CallAt(const QString& path, const QString& interface, const char* method,
                   const QVariantList& arguments = {});

    // The signals since the last call of this: "SchedulingEnabled(false,schedule.csv)".
    [[nodiscard]] QStringList TakeSignals();

    // Waits until that many signals have come, then takes them.
    [[nodiscard]] QStringList WaitForSignals(qsizetype count);

    static const QString SERVICE;
    static const QString PATH;
    static const QString INTERFACE;

private Q_SLOTS:
    void OnSchedulingEnabled(bool enabled, const QString& filename);
    void OnExpectedPddAction(uint actionId, bool enable);

private:
    QDBusConnection m_bus;
    QStringList m_signals;
};
