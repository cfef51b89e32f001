#pragma once

#include <QDBusContext>
#include <QList>
#include <QObject>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

class QDBusConnection;
class SimulatedPeer;
class Simulator;

// The object through which a test steers the simulator; its interface file tells what each method does.
// A method that cannot do what it is asked for, also because of an unknown interface, method, signal or kind, answers
// with the bus error InvalidArgs or Failed and the cause: a slip in a test must not pass unnoticed.
class ControlObject final : public QObject, protected QDBusContext
{
    Q_OBJECT
public:
    // simulator outlives the object.
    explicit ControlObject(Simulator& simulator);
    ~ControlObject() override;

    // Puts the object on the bus, then takes the service name. Throws std::runtime_error, with the cause.
    void Register(QDBusConnection bus, const QString& service);

    // The methods of the interface; the generated adaptor calls them.
    void SetAnswer(const QString& interface, const QString& method, const QString& kind, const QVariantList& values,
                   int delay_ms, int times);
    void SetSignal(const QString& interface, const QString& method, const QString& signal, const QVariantList& values,
                   bool isFirst, int gap_ms, int times);
    void ClearAnswers();
    void SetPresent(const QString& interface, bool present);
    void StandBy(const QString& interface);
    void EmitSignal(const QString& interface, const QString& signal, const QVariantList& values, int times);
    [[nodiscard]] QList<QVariantMap> Calls() const;
    void ForgetCalls();
    void Quit();

private:
    SimulatedPeer* RequirePeer(const QString& interface);
    void Try(const std::function<void()>& change);
    bool Require(bool condition, const QString& complaint);

    Simulator& m_simulator;
};
