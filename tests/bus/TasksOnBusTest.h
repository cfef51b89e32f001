#pragma once

#include "DataFolder.h"
#include "PrivateBus.h"
#include "SimulatorProcess.h"
#include "Task.h"
#include "Wait.h"

#include <QTest>

#include <memory>
#include <optional>

// What a test of tasks stands on that run in the test's own process: a private bus as the session bus, simulated
// devices in processes of their own, and the shared proxies. The loop runs only when the test lets it, so that what the
// bus delivers while a task asks waits for it. Records up to level 2 that a test does not take fail it.
class TasksOnBusTest : public QObject
{
    Q_OBJECT
protected:
    static const QString SECOND; // the control service of a second simulated device

    SimulatorProcess& Device() { return *m_device; }

    // kind: the name of one of PLAY_KINDS.
    [[nodiscard]] static std::unique_ptr<Task> MakeTask(QByteArrayView kind);

    // A second simulated device; owns none of the peers' names at first.
    SimulatorProcess& StartSecond();

    // Waits until the bus has delivered all that was sent so far, and lets the loop handle it.
    void HandleAll();

    [[nodiscard]] const PrivateBus& Bus() const { return *m_bus; }

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

private:
    std::optional<PrivateBus> m_bus;
    std::optional<DataFolder> m_data;
    std::optional<SimulatorProcess> m_device;
    std::optional<SimulatorProcess> m_second;
};
