#pragma once

#include "PrivateBus.h"

#include <QDBusPendingCall>
#include <QProcess>
#include <QStringList>
#include <QVariantList>

// The simulated device, a process of its own, steered over its control interface.
class SimulatorProcess final
{
public:
    // Ends the process with the object. bus outlives this object. control: the service name under which it is steered;
    // a second simulator on a bus needs another.
    explicit SimulatorProcess(const PrivateBus& bus, QString control = QStringLiteral("com.kestrelix.ozna.simulator"));
    ~SimulatorProcess();

    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // Returns when all peers are there.
    void Start(const QStringList& arguments = {QStringLiteral("--quiet")});

    // As Start, but no peer is there: each waits for SetPresent or StandBy.
    void StartWithoutPeers();

    // Answers of a method, given as "interface.method" with the interface's last word before "interface":
    // "sound.PlayFile". times: for how many calls; 0: for all that follow.
    void AnswerStatus(const char* method, int status, int delay_ms = 0, int times = 0) const;
    void AnswerValues(const char* method, const QVariantList& values, int delay_ms = 0, int times = 0) const;
    void AnswerError(const char* method, const char* message, int times = 0) const;
    void AnswerNever(const char* method, int times = 0) const;
    void AnswerByExit(const char* method) const;
    // As soon as the next call of the method has come.
    void AnswerLate(const char* method, int status) const;
    // The peer gives up its service name first.
    void AnswerAndLeave(const char* method, int status) const;
    // With what no bus takes: it drops the simulator.
    void AnswerBroken(const char* method) const;
    // The process ends once the answer is on the bus.
    void AnswerAndDie(const char* method, int status) const;
    // With status 0, and a signal right behind the answer, or that long after it.
    void AnswerThenEmit(const char* method, const char* signal, const QVariantList& values, int gap_ms = 0,
                        int times = 1) const;
    // With status 0, right behind a signal, or that long after it.
    void EmitThenAnswer(const char* method, const char* signal, const QVariantList& values, int gap_ms = 0,
                        int times = 1) const;
    void ClearAnswers() const;

    // Whether the peer with that interface, "sound", owns its service name.
    void SetPresent(const char* peer, bool present) const;

    // The peer lines up for its service name, until it comes or SetPresent says false.
    void StandBy(const char* peer) const;

    // signal: "sound.PlayFileCompleted".
    void Emit(const char* signal, const QVariantList& values, int times = 1) const;

    // The same without waiting until the last one is sent.
    [[nodiscard]] QDBusPendingCall EmitMeanwhile(const char* signal, const QVariantList& values, int times) const;

    // The calls since the last Forget: "sound.PlayFile ss gong.mp3 08:30:00", values separated by blanks, and the
    // signature "-" where there are no values.
    [[nodiscard]] QStringList Calls() const;

    // When each of those calls came, in milliseconds since 1970 of the real clock.
    [[nodiscard]] QList<qint64> CallTimes() const;
    void Forget() const;

    // Waits until that many calls have come since the last Forget.
    [[nodiscard]] bool WaitForCalls(qsizetype count) const;

    [[nodiscard]] bool IsRunning() const { return m_process.state() == QProcess::Running; }

private:
    [[nodiscard]] QDBusMessage ControlCall(const char* method, const QVariantList& arguments) const;
    QVariantList Control(const char* method, const QVariantList& arguments = {}) const;
    QList<QVariantMap> CallRecords() const;
    void SetSignal(const char* method, const char* signal, const QVariantList& values, bool isFirst, int gap_ms,
                   int times) const;
    void SetAnswer(const char* method, const char* kind, const QVariantList& values, int delay_ms, int times) const;

    const PrivateBus& m_bus;
    const QString m_control;
    QProcess m_process;
};
