#include "PeerAnswers.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/Light.h"

class LightTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnIntensityIsReadAtCreation_data();
    void AnIntensityIsReadAtCreation();
    void ASwitchBehindAnIntensityIsJudgedByItsAnswer_data() { PeerAnswers::AddRows(); }
    void ASwitchBehindAnIntensityIsJudgedByItsAnswer();
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
        log.append("2 [tasks/Light.cpp] Can't parse Light intensity from parameters: '" + parameter.toUtf8() +
                   "'. Using 0.");
    log.append("4 [tasks/Light.cpp] TASK CREATED | Light: " + QByteArray::number(intensity));
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task.m_type, TASK_LIGHT);
    QCOMPARE(task.m_identifier, QString());
    QCOMPARE(task.GetDelayable_s(), 0U);
}

void LightTest::ASwitchBehindAnIntensityIsJudgedByItsAnswer()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("Switch", [&answer](const PeerRequest&) { return answer.reply; });
    for (const char* intensity : {"50", "-1"})
    {
        const Request request = Request::Find("SetIntensity", intensity);
        Light task(QString::fromLatin1(intensity));
        LogRecorder::Clear();
        QCOMPARE(task.Run(), answer.IsAccepted());
        QCOMPARE(Bus().Requests().last().OnBus(), request.Followed().Call());
        Bus().Clear();
        EXPECT_LOG(9, (ToLines(answer.Filled(request.Followed().Records(answer.TakenAs(Judged::WHOLE))))));
    }
}

OZNA_CASE(Light, LightTest)
#include "tst_Light.moc"
