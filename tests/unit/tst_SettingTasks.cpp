#include "Suite.h"
#include "UnitTest.h"
#include "tasks/Amplifiers.h"
#include "tasks/Camera.h"
#include "tasks/CpuFreq.h"
#include "tasks/Gps.h"
#include "tasks/Lan.h"
#include "tasks/Volume.h"

#include <memory>

namespace
{

using Maker = std::unique_ptr<Task> (*)(const QString& parameter);

template <typename Kind> std::unique_ptr<Task> Make(const QString& parameter)
{
    return std::make_unique<Kind>(parameter);
}

} // namespace

// The tasks that set one property of the device with one request.
class SettingTasksTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AParameterIsReadAtCreation_data();
    void AParameterIsReadAtCreation();
};

void SettingTasksTest::AParameterIsReadAtCreation_data()
{
    QTest::addColumn<Maker>("make");
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<LogLines>("log");

    // Without a warning the parameter is taken.
    const auto rows = [](const char* kind, Maker make, const QByteArray& created, const QByteArray& warning) {
        return [=](const char* parameter, int value, bool isNumber = true) {
            const QByteArray file = QByteArray(" [tasks/") + kind + ".cpp] ";
            LogLines log;
            if (!isNumber && !warning.isEmpty())
                log.append("2" + file + QByteArray(warning).replace("%s", parameter));
            log.append("4" + file + "TASK CREATED | " + created + QByteArray::number(value));
            QTest::addRow("%s \"%s\"", kind, parameter) << make << QString::fromUtf8(parameter) << log;
        };
    };
    const auto numbers = [](const auto& row) {
        row("0", 0);
        row("5", 5);
        row("300", 300);
        row("-5", -5);
        row("+7", 7);
        row("007", 7);
        row("2147483647", std::numeric_limits<int>::max());
        row("-2147483648", std::numeric_limits<int>::min());
        for (const char* const text : {"", "abc", "0x0F", "0x05", "1.0", "1e1", "5 6", "5%", "2147483648",
                                       "-2147483649", "99999999999999999999", "%s%n", "caff\xc3\xa8"})
            row(text, 0, false);
    };
    numbers(rows("Amplifiers", Make<Amplifiers>,
                 "Amplifiers: ", "Can't parse Amplifiers mask from parameters: '%s'. Using 0."));
    numbers(rows("Volume", Make<Volume>, "Volume: ", "Can't parse Volume value from parameters: '%s'. Using 0."));

    // Only the number 1 means on.
    const auto switches = [](const auto& row) {
        row("1", 1);
        row("+1", 1);
        row("01", 1);
        for (const char* const text : {"0", "2", "-1", "10", "11", "257", "2147483647"})
            row(text, 0);
        for (const char* const text : {"", "abc", "true", "on", "yes", "1.0", "0x1", "1 1", "4294967297"})
            row(text, 0, false);
    };
    switches(rows("Camera", Make<Camera>, "Camera: ", ""));
    switches(rows("Gps", Make<Gps>, "Gps: ", "Can't parse Gps enabled/disabled from parameters: '%s'. Using false."));
    switches(rows("Lan", Make<Lan>, "Lan: ", "Can't parse Lan enabled/disabled from parameters: '%s'. Using false."));

    // There is one frequency, and the warning comes for every parameter.
    const auto cpuFreq =
        rows("CpuFreq", Make<CpuFreq>, "CpuFreq: ", "Can't parse Cpu frequency from parameters: '%s'. Using 456.");
    for (const char* const text : {"", "600", "456", "0", "-1", "abc"})
        cpuFreq(text, 456, false);
}

void SettingTasksTest::AParameterIsReadAtCreation()
{
    QFETCH(Maker, make);
    QFETCH(QString, parameter);
    QFETCH(LogLines, log);
    const std::unique_ptr<Task> task = make(parameter);
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task->m_identifier, QString());
    QCOMPARE(task->GetDelayable_s(), 0U);
    QCOMPARE(task->IsRunning(), false);
}

OZNA_CASE(SettingTasks, SettingTasksTest)
#include "tst_SettingTasks.moc"
