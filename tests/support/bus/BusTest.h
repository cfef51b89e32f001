#pragma once

#include "DaemonProcess.h"
#include "FakeTime.h"
#include "PrivateBus.h"
#include "SchedulerClient.h"
#include "SimulatorProcess.h"
#include "TextDiff.h"
#include "Wait.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

// What a test of the whole process stands on: each test function, and each row, gets a private bus, a simulated device,
// a data folder with a configuration, and a daemon that is not started yet, whose clock stands at 2024-01-15 08:29:49
// UTC, a Monday.
// A test fails at its end when the daemon has written an error or a warning that it did not take.
class BusTest : public QObject
{
    Q_OBJECT
protected:
    static constexpr int EXIT_FAILED = 255; // how a shell shows -1

    inline static const QDate MONDAY{2024, 1, 15};

    PrivateBus& Bus() { return *m_bus; }
    SimulatorProcess& Device() { return *m_device; }
    DaemonProcess& Daemon() { return *m_daemon; }
    SchedulerClient& Client() { return *m_client; }
    FakeTime& Time() { return *m_time; }
    [[nodiscard]] static QDateTime At(const QDate& day, const QTime& time) { return {day, time, Qt::UTC}; }

    // Puts another program in the daemon's place, with the same environment but on the real clock. The one
    // that was there before.
    std::unique_ptr<DaemonProcess> UseDaemon(const QString& program);

    [[nodiscard]] qint64 DaemonPid() const { return m_daemon->Pid(); }

    // Whether the programs under test are built with a sanitizer.
    [[nodiscard]] static bool IsSanitized();

    // Whether who runs the tests wants those too that take long or much memory: OZNA_LONG_TESTS is set.
    [[nodiscard]] static bool IsLong();

    [[nodiscard]] QString DataPath(const QString& name) const;
    static void WriteFile(const QString& path, const QByteArray& content);
    void WriteSchedule(const QByteArray& content, const QString& name = QStringLiteral("schedule.csv")) const;
    void WritePlaylist(const QByteArray& content, const QString& name) const;

    // Ends the simulated device's process, so that nobody has the peers' names, and starts another in its place.
    void StopDevice();
    void StartDevice();

    // Starts the daemon and waits until its schedule runs.
    [[nodiscard]] bool StartDaemon();

    // The same, and takes what has been logged so far.
    [[nodiscard]] bool StartAndTakeLog();

    // Waits until the far timer has fired that many times more.
    [[nodiscard]] bool WaitForPasses(int count = 1);

    // Waits until that many actions have been found early, and puts the clock to 08:30:00, when they are due.
    [[nodiscard]] bool RunDue(qsizetype actions);

    // Takes the records up to that level, and gives back those of tasks.
    [[nodiscard]] QStringList TakeTaskLines(unsigned int maxLevel = 9);

    // Ends the daemon with SIGTERM; its exit status.
    [[nodiscard]] int StopDaemon();

private Q_SLOTS:
    void init();
    void cleanup();

private:
    std::optional<QTemporaryDir> m_data;
    std::optional<PrivateBus> m_bus;
    std::optional<SimulatorProcess> m_device;
    std::optional<FakeTime> m_time;
    std::unique_ptr<DaemonProcess> m_daemon;
    std::optional<SchedulerClient> m_client;
};

// Fails the test, and leaves the test function, unless the two lists of lines are equal.
#define COMPARE_LINES(found, ...)                                                                                      \
    do                                                                                                                 \
    {                                                                                                                  \
        const QByteArray difference = TextDiff(__VA_ARGS__, (found), "line");                                          \
        if (!difference.isEmpty())                                                                                     \
        {                                                                                                              \
            QTest::qFail(difference.constData(), __FILE__, __LINE__);                                                  \
            return;                                                                                                    \
        }                                                                                                              \
    } while (false)
