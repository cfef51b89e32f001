#include "BusMessages.h"
#include "EveryKind.h"
#include "PeerNames.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// The requests of every kind of task, with their exact signatures, and what is logged for every answer.
class EveryKindAndAnswer : public EveryKind
{
    Q_OBJECT

private Q_SLOTS:
    void IsRequestedWithItsSignature();
    void IsLoggedWhenRefused();
    void IsLoggedWhenItFailsOnTheBus();
    void IsLoggedWhenThePeersAreAbsent();
    void CountsAsAcceptedWhenTheAnswerIsNoNumber_data();
    void CountsAsAcceptedWhenTheAnswerIsNoNumber();
    void RadioThatCannotBeTunedIsOn();
    void LightThatCannotBeSwitchedIsLogged();

private:
    // The error that a refused request is logged with.
    static QStringList Refused(const Request& request);
};

QStringList EveryKindAndAnswer::Refused(const Request& request)
{
    return Shown(Answered(request.Records(Outcome::REFUSED), QString(), REFUSAL), 1);
}

void EveryKindAndAnswer::IsRequestedWithItsSignature()
{
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(Device().Calls(), Calls(Outcome::ACCEPTED));
    COMPARE_LINES(TakeTaskLines(9), TaskLines(Outcome::ACCEPTED));
    COMPARE_LINES(Client().WaitForSignals(1), {u"ExpectedPddAction(1,true)"_s});
}

void EveryKindAndAnswer::IsLoggedWhenRefused()
{
    for (const QByteArray& method : Methods())
        Device().AnswerStatus(method.constData(), REFUSAL);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(9), TaskLines(Outcome::REFUSED));
    COMPARE_LINES(Device().Calls(), Calls(Outcome::REFUSED));
}

void EveryKindAndAnswer::IsLoggedWhenItFailsOnTheBus()
{
    for (const QByteArray& method : Methods())
        Device().AnswerError(method.constData(), "out of order");
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(9), TaskLines(Outcome::BUS_ERROR, "out of order"));
    COMPARE_LINES(Device().Calls(), Calls(Outcome::BUS_ERROR));
}

void EveryKindAndAnswer::IsLoggedWhenThePeersAreAbsent()
{
    for (const auto& [peer, object] : PEER_NAMES)
        Device().SetPresent(peer, false);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(9), TaskLines(Outcome::BUS_ERROR, NO_OWNER));
    COMPARE_LINES(Device().Calls(), QStringList());
}

void EveryKindAndAnswer::CountsAsAcceptedWhenTheAnswerIsNoNumber_data()
{
    QTest::addColumn<QVariantList>("values");
    QTest::newRow("a text") << QVariantList{u"fine"_s};
    QTest::newRow("nothing") << QVariantList();
    QTest::newRow("a list of numbers") << QVariantList{QVariant::fromValue(QList<int>{7, 8})};
    QTest::newRow("an empty map") << QVariantList{QVariantMap()};
    QTest::newRow("0 and more than was asked for") << QVariantList{0, 7, u"more"_s};
}

void EveryKindAndAnswer::CountsAsAcceptedWhenTheAnswerIsNoNumber()
{
    QFETCH(QVariantList, values);
    for (const QByteArray& method : Methods())
        Device().AnswerValues(method.constData(), values);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(9), TaskLines(Outcome::ACCEPTED));
    COMPARE_LINES(Device().Calls(), Calls(Outcome::ACCEPTED));
}

void EveryKindAndAnswer::RadioThatCannotBeTunedIsOn()
{
    Device().AnswerStatus("sound.RadioFmSetFrequency", REFUSAL);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(1), Refused(Request::Find("RadioFmSetFrequency", "98.5")));
    COMPARE_LINES(Device().Calls(), Calls(Outcome::ACCEPTED));
}

void EveryKindAndAnswer::LightThatCannotBeSwitchedIsLogged()
{
    Device().AnswerStatus("light.Switch", REFUSAL);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(1),
                  Refused(Request::Find("SetIntensity", "50").Followed()) + Refused(Request::Find("Switch", "0")));
    COMPARE_LINES(Device().Calls(), Calls(Outcome::ACCEPTED));
}

OZNA_CASE(EveryKind, EveryKindAndAnswer)
#include "tst_EveryKind.moc"
