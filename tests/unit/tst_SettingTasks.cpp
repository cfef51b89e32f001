#include "OneRequest.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/Amplifiers.h"
#include "tasks/Camera.h"
#include "tasks/CpuFreq.h"
#include "tasks/Gps.h"
#include "tasks/Lan.h"
#include "tasks/Volume.h"

using namespace Qt::StringLiterals;

namespace
{

using Maker = std::unique_ptr<Task> (*)(const QString& parameter);

template <typename Kind> std::unique_ptr<Task> Make(const QString& parameter)
{
    return std::make_unique<Kind>(parameter);
}

// Has Make called with the parameter.
template <typename Kind> auto Creator(const char* parameter)
{
    return [text = QString::fromUtf8(parameter)] { return Make<Kind>(text); };
}

constexpr int SOUND_TIMEOUT_MS = 3000;
constexpr int PHOTO_TIMEOUT_MS = 5000;
constexpr int FREQ_TIMEOUT_MS = 2000;
constexpr int GPS_TIMEOUT_MS = 5000;
constexpr int LIBRARY_TIMEOUT_MS = -1;

} // namespace

// The tasks that set one property of the device with one request.
class SettingTasksTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AParameterIsReadAtCreation_data();
    void AParameterIsReadAtCreation();
    void ARequestIsSentAndItsAnswerLogged_data();
    void ARequestIsSentAndItsAnswerLogged();
};

void SettingTasksTest::AParameterIsReadAtCreation_data()
{
    QTest::addColumn<Maker>("make");
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<LogLines>("log");

    // Without a warning the parameter is taken.
    const auto rows = [](const char* kind, Maker make, const QByteArray& created, const QByteArray& warning) {
        return [=](const char* parameter, int value, bool isNumber = true) {
            const QByteArray file = QByteArray("[tasks/") + kind + ".cpp] ";
            LogLines log;
            if (!isNumber && !warning.isEmpty())
                log.append({2, file + QByteArray(warning).replace("%s", parameter)});
            log.append({4, file + "TASK CREATED | " + created + QByteArray::number(value)});
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

void SettingTasksTest::ARequestIsSentAndItsAnswerLogged_data()
{
    QList<OneRequest> requests;
    const auto amplifiers = [&requests](const char* parameter, const char* byte, const char* mask, const char* number) {
        const QByteArray file = "[tasks/Amplifiers.cpp] ";
        requests.append({QByteArray("Amplifiers ") + parameter,
                         Creator<Amplifiers>(parameter),
                         {},
                         u"soundmanager SetAmplifiers(y:%1)"_s.arg(QLatin1String(byte)),
                         SOUND_TIMEOUT_MS,
                         {1, file + "SetAmplifiers(" + mask + ") request error: {error}"},
                         {4, file + "SetIntensity(" + number + ") error: {status}\n"},
                         {9, file + "TASK REQUESTED | Amplifiers: " + mask}});
    };
    // The low byte is sent, the whole mask shown.
    amplifiers("300", "44", "0x12c", "300");
    amplifiers("0x0F", "0", "0x00", "0");
    amplifiers("5", "5", "0x05", "5");
    amplifiers("255", "255", "0xff", "255");
    amplifiers("256", "0", "0x100", "256");
    amplifiers("-1", "255", "0xffffffff", "-1");
    amplifiers("-2147483648", "0", "0x80000000", "-2147483648");

    const auto camera = [&requests](const char* parameter, bool on) {
        const QByteArray file = "[tasks/Camera.cpp] ";
        const QByteArray number = on ? "1" : "0";
        requests.append({QByteArray("Camera ") + parameter,
                         Creator<Camera>(parameter),
                         {{9, file + (on ? "Enabling" : "Disabling")}},
                         on ? u"photomanager EnableCamera(b:true)"_s : u"photomanager EnableCamera(b:false)"_s,
                         PHOTO_TIMEOUT_MS,
                         {4, file + "EnableCamera(" + number + ") request error: {error}\n"},
                         {1, file + "EnableCamera error: {status}\n"},
                         {9, file + "TASK REQUESTED | EnableCamera:" + number}});
    };
    camera("1", true);
    camera("0", false);
    camera("2", false);
    camera("abc", false);

    const QByteArray freqFile = "[tasks/CpuFreq.cpp] ";
    for (const char* const parameter : {"600", "", "456"})
        requests.append({QByteArray("CpuFreq \"") + parameter + '"',
                         Creator<CpuFreq>(parameter),
                         {},
                         u"freqmanager SetFreq(i:456)"_s,
                         FREQ_TIMEOUT_MS,
                         {1, freqFile + "SetFreq(456) request error: {error}"},
                         {4, freqFile + "SetFreq(456) error: {status}\n"},
                         {9, freqFile + "TASK EXECUTED | CpuFreq: 456"}});

    const auto gps = [&requests](const char* parameter, bool on) {
        const QByteArray file = "[tasks/Gps.cpp] ";
        const QByteArray number = on ? "1" : "0";
        requests.append({QByteArray("Gps ") + parameter,
                         Creator<Gps>(parameter),
                         {},
                         on ? u"gpsmanager SetEnabled(b:true)"_s : u"gpsmanager SetEnabled(b:false)"_s,
                         GPS_TIMEOUT_MS,
                         {1, file + "SetEnabled(" + number + ") request error: {error}\n"},
                         {1, file + "SetEnabled(" + number + ") error: {status}\n"},
                         {9, file + "TASK REQUESTED | Gps: " + number}});
    };
    gps("1", true);
    gps("0", false);
    gps("2", false);

    const auto lan = [&requests](const char* parameter, bool on) {
        const QByteArray file = "[tasks/Lan.cpp] ";
        const QByteArray number = on ? "1" : "0";
        requests.append({QByteArray("Lan ") + parameter,
                         Creator<Lan>(parameter),
                         {},
                         on ? u"networkmanager EnableLan(b:true, s:, s:, s:)"_s : u"networkmanager DisableLan()"_s,
                         LIBRARY_TIMEOUT_MS,
                         {1, file + (on ? "EnableLan(dhcp)" : "DisableLan") + " request error: {error}\n"},
                         {1, file + "EnableLan(" + number + ") error: {status}\n"},
                         {9, file + "TASK REQUESTED | Lan: " + number}});
    };
    lan("1", true);
    lan("0", false);
    lan("2", false);

    const auto volume = [&requests](const char* parameter, const QByteArray& number) {
        const QByteArray file = "[tasks/Volume.cpp] ";
        requests.append({QByteArray("Volume ") + parameter,
                         Creator<Volume>(parameter),
                         {},
                         u"soundmanager SetMasterVolume(d:%1)"_s.arg(QLatin1String(number)),
                         SOUND_TIMEOUT_MS,
                         {1, file + "SetVolume(" + number + ") request error: {error}\n"},
                         {1, file + "SetVolume(" + number + ") error: {status}\n"},
                         {4, file + "TASK REQUESTED | Volume: " + number}});
    };
    volume("70", "70");
    volume("-5", "-5");
    volume("loud", "0");
    volume("1000", "1000");
    OneRequestRows::Add(requests);
}

void SettingTasksTest::ARequestIsSentAndItsAnswerLogged()
{
    OneRequestRows::Check(Bus());
}

OZNA_CASE(SettingTasks, SettingTasksTest)
#include "tst_SettingTasks.moc"
