#include "PlayerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// The radio, whose stations are streams.
class tst_PlayRadioFm final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void PlaysTheStationOnceItIsOnAndTuned_data();
    void PlaysTheStationOnceItIsOnAndTuned();
    void FrequenciesAreNumbers();
    void TunedAnewItPlaysTheOtherStation();
    void TunedToTheSameItGoesOn();
    void OffItHasToBeTunedAnew();
    void ABrokenStationIsPlayedAgainWhenAskedFor();
    void AFrequencyWithoutAStationIsRefusedAndSilent();
    void WithoutStationsItIsNotSetUp();

private:
    void SetStations();
};

void tst_PlayRadioFm::SetStations()
{
    Settings().stations = {{98.5, u"https://one.example/live"_s}, {101, u"https://two.example/live"_s}};
    StartService();
}

void tst_PlayRadioFm::PlaysTheStationOnceItIsOnAndTuned_data()
{
    QTest::addColumn<bool>("isTunedFirst");
    QTest::newRow("on first") << false;
    QTest::newRow("tuned first") << true;
}

void tst_PlayRadioFm::PlaysTheStationOnceItIsOnAndTuned()
{
    QFETCH(const bool, isTunedFirst);
    SetStations();
    if (isTunedFirst)
        QCOMPARE(Call("RadioFmSetFrequency", {98.5}), 0);
    else
        QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Sound().Pieces().size(), 0);
    if (isTunedFirst)
        QCOMPARE(Call("PlayRadioFm"), 0);
    else
        QCOMPARE(Call("RadioFmSetFrequency", {98.5}), 0);
    QCOMPARE(Sound().Pieces().size(), 1);
    QCOMPARE(Shown(0), u"radio https://one.example/live 100"_s);
}

void tst_PlayRadioFm::FrequenciesAreNumbers()
{
    SetStations();
    QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Call("RadioFmSetFrequency", {98.50000001}), 0);
    QCOMPARE(Call("RadioFmSetFrequency", {101.0}), 0);
    QCOMPARE(Shown(1), u"radio https://two.example/live 100"_s);
}

void tst_PlayRadioFm::TunedAnewItPlaysTheOtherStation()
{
    SetStations();
    QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Call("RadioFmSetFrequency", {98.5}), 0);
    QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Call("RadioFmSetFrequency", {101.0}), 0);
    QCOMPARE(Sound().Pieces().size(), 2);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
}

void tst_PlayRadioFm::TunedToTheSameItGoesOn()
{
    SetStations();
    for (int i = 0; i < 2; ++i)
    {
        QCOMPARE(Call("PlayRadioFm"), 0);
        QCOMPARE(Call("RadioFmSetFrequency", {98.5}), 0);
    }
    QCOMPARE(Sound().Pieces().size(), 1);
    QCOMPARE(Sound().TakeCalls(), QStringList());
}

void tst_PlayRadioFm::OffItHasToBeTunedAnew()
{
    SetStations();
    QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Call("RadioFmSetFrequency", {98.5}), 0);
    QCOMPARE(Call("StopPlay", {u"radiofm"_s, QString()}), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
    QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Sound().Pieces().size(), 1);
    QCOMPARE(Call("RadioFmSetFrequency", {98.5}), 0);
    QCOMPARE(Sound().Pieces().size(), 2);
}

void tst_PlayRadioFm::ABrokenStationIsPlayedAgainWhenAskedFor()
{
    SetStations();
    QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Call("RadioFmSetFrequency", {98.5}), 0);
    Q_EMIT Sound().Ended(1, u"nobody answers"_s);
    EXPECT_LOG(LEVEL_WARNING, {{"1 [service/LivePiece.cpp] ENDED | radiofm: https://one.example/live: nobody answers",
                                SoundManager::PATH}});
    QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Sound().Pieces().size(), 2);
}

void tst_PlayRadioFm::AFrequencyWithoutAStationIsRefusedAndSilent()
{
    SetStations();
    QCOMPARE(Call("PlayRadioFm"), 0);
    QCOMPARE(Call("RadioFmSetFrequency", {98.5}), 0);
    QCOMPARE(Call("RadioFmSetFrequency", {98.6}), 4);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
    EXPECT_LOG(LEVEL_WARNING,
               {{"1 [service/RadioPlayer.cpp] No radio station is set up at 98.60 MHz", SoundManager::PATH}});
}

void tst_PlayRadioFm::WithoutStationsItIsNotSetUp()
{
    QCOMPARE(Call("PlayRadioFm"), 4);
    EXPECT_LOG(LEVEL_WARNING,
               {{"1 [service/RadioPlayer.cpp] No radio station is set up: [PLAYER] has no key such as Radio98.5",
                 SoundManager::PATH}});
}

OZNA_CASE(PlayRadioFm, tst_PlayRadioFm)

#include "tst_PlayRadioFm.moc"
