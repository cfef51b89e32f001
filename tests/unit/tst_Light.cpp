#include "PeerAnswers.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/Light.h"

class LightTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnIntensityIsReadAtCreation();
    void ASwitchBehindAnIntensityIsJudgedByItsAnswer_data() { PeerAnswers::AddRows(); }
    void ASwitchBehindAnIntensityIsJudgedByItsAnswer();
};

void LightTest::AnIntensityIsReadAtCreation()
{
    const auto check = [this](const QByteArray& parameter, int intensity, const LogLines& before = {}) {
        const Light task(QString::fromUtf8(parameter));
        const LogLine created("4 [tasks/Light.cpp] TASK CREATED | Light: " + QByteArray::number(intensity));
        EXPECT_LOG(9, (before + LogLines{created}));
        EXPECT_REQUESTS(Bus(), {});
        QCOMPARE(task.m_type, TASK_LIGHT);
        QCOMPARE(task.m_identifier, QString());
        QCOMPARE(task.GetDelayable_s(), 0U);
    };
    for (const int number : {0, 50, -1, 1000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        check(QByteArray::number(number), number);
    for (const QByteArray text : {"", "on", "50%", "0x10", "1.5", "2147483648", "4294967295", "%s"})
        check(text, 0, {"2 [tasks/Light.cpp] Can't parse Light intensity from parameters: '" + text + "'. Using 0."});
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
        QCOMPARE(Bus().Requests().last().Shown(), request.Followed().Call());
        Bus().Clear();
        EXPECT_LOG(9, (ToLines(answer.Filled(request.Followed().Records(answer.TakenAs(Judged::WHOLE))))));
    }
}

OZNA_CASE(Light, LightTest)
#include "tst_Light.moc"
