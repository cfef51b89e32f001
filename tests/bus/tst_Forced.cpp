#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// The light and radio state that should be in force is brought about when a schedule starts.
class Forced : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void TheLatestStateIsBroughtAbout_data();
    void TheLatestStateIsBroughtAbout();
};

namespace
{
const QByteArray RADIO = "1111111|08:00:00|*|*|*|||PlayRadioFm|98.5\n";
const QByteArray RADIO_OFF = "1111111|12:00:00|*|*|*|||StopRadioFm\n";
const QByteArray LIGHTS = "1111111|08:00:00|*|*|*|||Light|30\n1111111|09:00:00|*|*|*|||Light|0\n";
const QStringList RADIO_CALLS{u"sound.PlayRadioFm -"_s, u"sound.RadioFmSetFrequency d 98.5"_s};
const QString FOUND_LIGHT = u"4 [Scheduler.cpp] Found Light action to start"_s;
const QString FOUND_RADIO = u"4 [Scheduler.cpp] Found RadioFm action to start"_s;
} // namespace

void Forced::TheLatestStateIsBroughtAbout_data()
{
    QTest::addColumn<QByteArray>("schedule");
    QTest::addColumn<QTime>("start");
    QTest::addColumn<QStringList>("found");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("the light of 09:00 at 10:00")
        << LIGHTS << QTime(10, 0) << QStringList{FOUND_LIGHT} << QStringList{u"light.Switch b false"_s};
    QTest::newRow("the light of 08:00 at 08:30") << LIGHTS << QTime(8, 30) << QStringList{FOUND_LIGHT}
                                                 << QStringList{u"light.SetIntensity u 30"_s, u"light.Switch b true"_s};
    QTest::newRow("no light at 07:00") << LIGHTS << QTime(7, 0) << QStringList() << QStringList();
    QTest::newRow("the radio at 10:00") << RADIO + RADIO_OFF << QTime(10, 0) << QStringList{FOUND_RADIO} << RADIO_CALLS;
    QTest::newRow("no radio after its stop") << RADIO + RADIO_OFF << QTime(13, 0) << QStringList() << QStringList();
    QTest::newRow("no radio with a stop at its time") << RADIO + "1111111|08:00:00|*|*|*|||StopRadioFm\n"
                                                      << QTime(10, 0) << QStringList() << QStringList();
    QTest::newRow("both") << LIGHTS + RADIO << QTime(10, 0) << QStringList{FOUND_LIGHT, FOUND_RADIO}
                          << QStringList{u"light.Switch b false"_s} + RADIO_CALLS;
}

void Forced::TheLatestStateIsBroughtAbout()
{
    QFETCH(QByteArray, schedule);
    QFETCH(QTime, start);
    QFETCH(QStringList, found);
    QFETCH(QStringList, calls);
    WriteSchedule(schedule);
    Time().Set(MONDAY, start);
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take().filter(u"[Scheduler.cpp] Found "_s), found);
    // Two far passes: what was to be forced has been, and what was not would have been seen.
    QVERIFY(WaitForPasses(2));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    COMPARE_LINES(Device().Calls(), calls);
}

OZNA_CASE(Forced, Forced)
#include "tst_Forced.moc"
