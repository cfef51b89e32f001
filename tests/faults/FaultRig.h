#pragma once

#include "DaemonProcess.h"
#include "FakeTime.h"
#include "PrivateBus.h"
#include "SchedulerClient.h"
#include "SimulatorProcess.h"

#include <QTemporaryDir>

#include <optional>

// The processes with which one request is tried, on a bus of their own: the daemon, the device, and a second simulator
// that owns no peer's name. The daemon's clock begins on a morning before everything is due.
class FaultRig final
{
public:
    // schedule: the lines of the file.
    explicit FaultRig(const QByteArray& schedule);
    ~FaultRig();

    FaultRig(const FaultRig&) = delete;
    FaultRig& operator=(const FaultRig&) = delete;

    SimulatorProcess& Device() { return *m_device; }
    SimulatorProcess& Second() { return *m_second; }
    DaemonProcess& Daemon() { return m_daemon; }
    SchedulerClient& Client() { return m_client; }
    PrivateBus& Bus() { return m_bus; }

    // Starts the daemon; false when its schedule does not run.
    [[nodiscard]] bool Start();

    // The device's process ends.
    void LoseDevice();

    // A device in the place of one that has ended.
    void ReplaceDevice();

    // Waits until the daemon's loop has dealt with all that reached it so far. False when it takes too long.
    [[nodiscard]] bool WaitForLoop();

    // Sets the daemon's clock.
    void SetTime(const QDate& day, const QTime& time);

    // The same, but never back.
    void AdvanceTo(const QDate& day, const QTime& time);

private:
    QTemporaryDir m_data;
    PrivateBus m_bus;
    std::optional<SimulatorProcess> m_device;
    std::optional<SimulatorProcess> m_second;
    FakeTime m_time;
    DaemonProcess m_daemon;
    SchedulerClient m_client;
};
