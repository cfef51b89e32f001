#pragma once

#include "AnswerScript.h"
#include "Call.h"
#include "InterfaceDescription.h"
#include "PeerTable.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QHash>

#include <functional>

// One of the device's managers. Takes every call that its description allows, reports it, and answers as scripted;
// what the description does not allow gets the bus error that a real service would give.
class SimulatedPeer final : public QDBusVirtualObject
{
    Q_OBJECT
public:
    // script outlives the peer. Throws std::runtime_error when there is no usable description.
    SimulatedPeer(const PeerAddress& address, const QDBusConnection& bus, AnswerScript& script);
    ~SimulatedPeer() override;

    // Puts the object on the bus. Throws std::runtime_error when the bus library does not take it.
    void Register();

    // Takes or gives up the service name. Throws std::runtime_error when the bus refuses.
    void SetPresent(bool present);

    // Queues for the service name, which this process gets when its owner releases it; SetPresent(false) leaves the
    // queue. Throws std::runtime_error when the bus refuses.
    void StandBy();

    // Sends the signal with the values as they are typed. False when it could not be sent.
    [[nodiscard]] bool SendSignal(const QString& signal, const QVariantList& values);

    [[nodiscard]] const InterfaceDescription& Description() const { return m_description; }

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

Q_SIGNALS:
    // A call has arrived; it is not answered yet.
    void Received(const Call& call);

    // A call has been answered with status 0.
    void Accepted(const Call& call);

    void SignalSent(const QString& interface, const QString& signal, const QVariantList& values);

private:
    void HandleCall(const QDBusMessage& message, const InterfaceDescription::Method& method);
    void After(int delay_ms, std::function<void()> action);
    void Send(const QDBusMessage& request, const Call& call, const Answer& answer);
    void SendBeside(const SignalBeside& signal);
    [[noreturn]] void Die();
    void Leave();
    void SendLate(const QString& method);
    void Reply(const QDBusMessage& request, const QDBusMessage& reply);

    const PeerAddress& m_address;
    const InterfaceDescription m_description;
    QDBusConnection m_bus;
    AnswerScript& m_script;
    bool m_present = false;              // or lined up
    QHash<QString, QDBusMessage> m_late; // answers that wait for the next call of their method
};
