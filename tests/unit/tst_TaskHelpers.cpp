#include "Parameter.h"
#include "ProxyTimeout.h"
#include "PunctualTask.h"
#include "Scheduler.h"
#include "UnitTest.h"

#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace
{

constexpr int SOUND_TIMEOUT_MS = 3000;
constexpr int PHOTO_TIMEOUT_MS = 5000;
constexpr int FALLBACK = 42;

class BareTask final : public PunctualTask
{
public:
    BareTask()
        : PunctualTask(TASK_VOLUME, u"identifier"_s)
    {
    }
    bool Run() override { return true; }
};

int SoundTimeout()
{
    return Scheduler::m_soundManProxy->timeout();
}

} // namespace

// What the kinds of task share.
class TaskHelpersTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AParameterIsADecimalNumber_data();
    void AParameterIsADecimalNumber();
    void ATimeoutLastsAsLongAsItsObject();
    void ATimeoutEndsWithAnException();
    void ATimeoutIsThatOfOneProxy();
    void APunctualTaskIsNeverLate();
};

void TaskHelpersTest::AParameterIsADecimalNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<int>("number");
    const auto number = [](const char* text, int value) {
        QTest::addRow("\"%s\"", text) << QString::fromUtf8(text) << true << value;
    };
    number("0", 0);
    number("1", 1);
    number("01", 1);
    number("+1", 1);
    number("2", 2);
    number("-1", -1);
    number("-0", 0);
    number("42", 42);
    number("2147483647", std::numeric_limits<int>::max());
    number("-2147483648", std::numeric_limits<int>::min());
    for (const char* const text : {"", "x", "1x", "x1", "1.0", "1,0", "1e0", "0x1", "0b1", "1 1", "--1", "+", "-",
                                   "2147483648", "-2147483649", "4294967297", "\xef\xbc\x91"})
        QTest::addRow("\"%s\" is none", text) << QString::fromUtf8(text) << false << 0;
    QTest::newRow("a null text is none") << QString() << false << 0;
}

void TaskHelpersTest::AParameterIsADecimalNumber()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(int, number);
    int warnings = 0;
    const auto warn = [&warnings] { ++warnings; };
    QCOMPARE(Parameter::ToInt(text, FALLBACK, warn), isNumber ? number : FALLBACK);
    QCOMPARE(warnings, isNumber ? 0 : 1);
    // Only the number 1 switches on.
    QCOMPARE(Parameter::ToSwitch(text, warn), isNumber && number == 1);
    QCOMPARE(warnings, isNumber ? 0 : 2);
}

void TaskHelpersTest::ATimeoutLastsAsLongAsItsObject()
{
    QCOMPARE(SoundTimeout(), SOUND_TIMEOUT_MS);
    {
        const ProxyTimeout outer(Scheduler::m_soundManProxy, 5000);
        QCOMPARE(SoundTimeout(), 5000);
        {
            const ProxyTimeout inner(Scheduler::m_soundManProxy, 20000);
            QCOMPARE(SoundTimeout(), 20000);
        }
        QCOMPARE(SoundTimeout(), 5000);
    }
    QCOMPARE(SoundTimeout(), SOUND_TIMEOUT_MS);
}

void TaskHelpersTest::ATimeoutEndsWithAnException()
{
    const auto fail = [] {
        const ProxyTimeout patience(Scheduler::m_soundManProxy, 20000);
        throw std::runtime_error("call");
    };
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, fail());
    QCOMPARE(SoundTimeout(), SOUND_TIMEOUT_MS);
}

void TaskHelpersTest::ATimeoutIsThatOfOneProxy()
{
    const ProxyTimeout patience(Scheduler::m_soundManProxy, 20000);
    QCOMPARE(Scheduler::m_photoManProxy->timeout(), PHOTO_TIMEOUT_MS);
}

void TaskHelpersTest::APunctualTaskIsNeverLate()
{
    BareTask task;
    QCOMPARE(task.GetDelayable_s(), 0U);
    QCOMPARE(task.m_type, TASK_VOLUME);
    QCOMPARE(task.m_identifier, u"identifier"_s);
    task.PrepareDelayed(60);
    task.SetCompleted(true);
    QCOMPARE(task.GetDelayable_s(), 0U);
    QCOMPARE(task.IsRunning(), false);
    EXPECT_LOG(9, {});
}

QTEST_GUILESS_MAIN(TaskHelpersTest)
#include "tst_TaskHelpers.moc"
