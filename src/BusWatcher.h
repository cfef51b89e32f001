#pragma once

#include <QObject>

#include <functional>

class QDBusConnection;

// Tells when the connection to the bus is lost.
class BusWatcher final : public QObject
{
    Q_OBJECT
public:
    // Has onLost called from the event loop, once, when bus is disconnected. Throws std::runtime_error when the bus
    // library does not take the subscription.
    BusWatcher(QDBusConnection& bus, std::function<void()> onLost);
    ~BusWatcher() override;

private Q_SLOTS:
    void OnDisconnected();

private:
    const std::function<void()> m_onLost;
};
