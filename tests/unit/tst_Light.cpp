#include "PeerAnswers.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/Light.h"

using namespace Qt::StringLiterals;

class LightTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnIntensityIsReadAtCreation_data();
    void AnIntensityIsReadAtCreation();
    void TheIntensityIsSetBeforeTheSwitch_data();
    void TheIntensityIsSetBeforeTheSwitch();
    void ARefusedIntensityLeavesTheSwitchAlone_data();
    void ARefusedIntensityLeavesTheSwitchAlone();
    void TheSwitchIsJudgedByItsAnswer_data();
    void TheSwitchIsJudgedByItsAnswer();
};

void LightTest::AnIntensityIsReadAtCreation_data()
{
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<int>("intensity");
    QTest::addColumn<bool>("isNumber");
    const auto row = [](const char* parameter, int intensity, bool isNumber = true) {
        QTest::addRow("\"%s\"", parameter) << QString::fromUtf8(parameter) << intensity << isNumber;
    };
    row("0", 0);
    row("50", 50);
    row("-1", -1);
    row("1000", 1000);
    row("2147483647", std::numeric_limits<int>::max());
    row("-2147483648", std::numeric_limits<int>::min());
    for (const char* const text : {"", "on", "50%", "0x10", "1.5", "2147483648", "4294967295", "%s"})
        row(text, 0, false);
}

void LightTest::AnIntensityIsReadAtCreation()
{
    QFETCH(QString, parameter);
    QFETCH(int, intensity);
    QFETCH(bool, isNumber);
    const Light task(parameter);
    LogLines log;
    if (!isNumber)
        log.append({2, "[tasks/Light.cpp] Can't parse Light intensity from parameters: '" + parameter.toUtf8() +
                           "'. Using 0."});
    log.append({4, "[tasks/Light.cpp] TASK CREATED | Light: " + QByteArray::number(intensity)});
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task.m_type, TASK_LIGHT);
    QCOMPARE(task.m_identifier, QString());
    QCOMPARE(task.GetDelayable_s(), 0U);
}

void LightTest::TheIntensityIsSetBeforeTheSwitch_data()
{
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<QByteArray>("switchedOn");
    const QString switchOn = u"lightmanager Switch(b:true)"_s;
    const QStringList switchOff{u"lightmanager Switch(b:false)"_s};
    QTest::newRow("0 only switches off") << u"0"_s << switchOff << "0"_ba;
    QTest::newRow("text that is no number only switches off") << u"bright"_s << switchOff << "0"_ba;
    const auto on = [&switchOn](const QString& parameter, const char* intensity) {
        QTest::newRow(qPrintable(parameter))
            << parameter << QStringList{u"lightmanager SetIntensity(u:%1)"_s.arg(QLatin1String(intensity)), switchOn}
            << "1"_ba;
    };
    on(u"1"_s, "1");
    on(u"50"_s, "50");
    on(u"2147483647"_s, "2147483647");
    // A negative number goes out with its bits as they are.
    on(u"-1"_s, "4294967295");
    on(u"-2147483648"_s, "2147483648");
}

void LightTest::TheIntensityIsSetBeforeTheSwitch()
{
    QFETCH(QString, parameter);
    QFETCH(QStringList, requests);
    QFETCH(QByteArray, switchedOn);
    Light task(parameter);
    LogRecorder::Clear();
    for (int day = 0; day < 2; ++day)
    {
        QVERIFY(task.Run());
        for (const PeerRequest& request : Bus().Requests())
            QCOMPARE(request.timeout_ms, -1);
        EXPECT_REQUESTS(Bus(), (requests));
        EXPECT_LOG(9, {{4, "[tasks/Light.cpp] TASK REQUESTED | Light: " + switchedOn}});
        QCOMPARE(task.IsRunning(), false);
    }
}

void LightTest::ARefusedIntensityLeavesTheSwitchAlone_data()
{
    QTest::addColumn<PeerAnswer>("answer");
    for (const PeerAnswer& answer : PeerAnswers::All())
        QTest::newRow(answer.name) << answer;
}

void LightTest::ARefusedIntensityLeavesTheSwitchAlone()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("SetIntensity", [&answer](const PeerRequest&) { return answer.reply; });
    for (const QByteArray intensity : {"50", "-1"})
    {
        Light task(QString::fromLatin1(intensity));
        LogRecorder::Clear();
        QCOMPARE(task.Run(), answer.IsAccepted());
        QCOMPARE(Bus().Requests().size(), answer.IsAccepted() ? 2 : 1);
        Bus().Clear();
        if (answer.IsAccepted())
            EXPECT_LOG(9, {{4, "[tasks/Light.cpp] TASK REQUESTED | Light: 1"}});
        else
            EXPECT_LOG(9, {{1, "[tasks/Light.cpp] SetIntensity(" + intensity + ") request error"}});
        QCOMPARE(task.IsRunning(), false);
    }
}

void LightTest::TheSwitchIsJudgedByItsAnswer_data()
{
    ARefusedIntensityLeavesTheSwitchAlone_data();
}

void LightTest::TheSwitchIsJudgedByItsAnswer()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("Switch", [&answer](const PeerRequest&) { return answer.reply; });
    for (const QByteArray intensity : {"0", "50", "-1"})
    {
        const QByteArray on = intensity == "0" ? "0" : "1";
        Light task(QString::fromLatin1(intensity));
        LogRecorder::Clear();
        QCOMPARE(task.Run(), answer.IsAccepted());
        QCOMPARE(Bus().Requests().last().method, u"Switch"_s);
        Bus().Clear();
        if (answer.IsAccepted())
            EXPECT_LOG(9, {{4, "[tasks/Light.cpp] TASK REQUESTED | Light: " + on}});
        else
            EXPECT_LOG(9, {{1, "[tasks/Light.cpp] Switch(" + on + ") request error"}});
        QCOMPARE(task.IsRunning(), false);
    }
}

OZNA_CASE(Light, LightTest)
#include "tst_Light.moc"
