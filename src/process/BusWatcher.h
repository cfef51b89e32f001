#pragma once

#include <QObject>

#include <functional>

class QDBusConnection;

// Tells when the connection to the bus is lost.
class BusWatcher final : public QObject
{
    Q_OBJECT
public:
    // onLost: called from the event loop, once, when the watched bus is disconnected.
    explicit BusWatcher(std::function<void()> onLost);
    ~BusWatcher() override;

    // Begins to watch bus; false when it is not connected or the bus library does not take the subscription.
    [[nodiscard]] bool Watch(QDBusConnection bus);

private Q_SLOTS:
    void OnDisconnected();

private:
    const std::function<void()> m_onLost;
};
