#pragma once

#include "AnswerScript.h"
#include "CallLog.h"
#include "SimulatedPeer.h"

#include <QDBusConnection>
#include <QObject>

#include <memory>
#include <vector>

// All simulated peers of one bus, with the script of their answers and the log of the calls they received.
class Simulator final : public QObject
{
    Q_OBJECT
public:
    // Creates the peers. Throws std::runtime_error when one has no usable description.
    explicit Simulator(const QDBusConnection& bus);
    ~Simulator() override;

    // Puts the peers' objects on the bus, then takes their names but those of the absent interfaces.
    // Throws std::runtime_error, with the cause, at the first failure.
    void Register(const QStringList& absentInterfaces);

    // Null when no peer has that interface.
    [[nodiscard]] SimulatedPeer* FindPeer(const QString& interface);

    [[nodiscard]] AnswerScript& Script() { return m_script; }
    [[nodiscard]] CallLog& Log() { return m_log; }

Q_SIGNALS:
    // See SimulatedPeer.
    void Received(const Call& call);
    void Accepted(const Call& call);
    void SignalSent(const QString& interface, const QString& signal, const QVariantList& values);

private:
    AnswerScript m_script;
    CallLog m_log;
    std::vector<std::unique_ptr<SimulatedPeer>> m_peers;
};
