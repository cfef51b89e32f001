#include "Log.h"
#include "MissedLines.h"
#include "PassingTest.h"
#include "Rows.h"
#include "Suite.h"
#include "TimeZone.h"

#include <QDateTime>

using namespace MissedLines;
using namespace Qt::StringLiterals;

namespace
{

constexpr int PHASE_MS = 200;
constexpr int NEAR_S = 90;
constexpr int PHASES = 15; // how many early passes there are to a far pass

} // namespace

// The nights in which clocks are put forward or back, from an hour before to two hours after.
class ClockNightsTest final : public PassingTest
{
    Q_OBJECT
private Q_SLOTS:
    void AStartInTheNight_data();
    void AStartInTheNight();
    void TheFirstSecondsAfterTheChange_data();
    void TheFirstSecondsAfterTheChange();
    void AMessageRightAfterARepeatedHourComesTwice();
    void AMessageThatStillPlaysComesOnce();
    void APlaylistInASkippedHourIsJoinedLate_data();
    void APlaylistInASkippedHourIsJoinedLate();
    void TheNextDayIsAsAlways_data();
    void TheNextDayIsAsAlways();

private:
    // Somewhat more than an hour before the change at that moment, "2024-03-31T01:00:00" in UTC, with one line.
    void Before(const QString& change, const QByteArray& line);
};

void ClockNightsTest::Before(const QString& change, const QByteArray& line)
{
    Time().SetUtc_ms(QDateTime::fromString(change + u'Z', Qt::ISODate).addSecs(-3630).toMSecsSinceEpoch());
    StartSchedule({line});
}

void ClockNightsTest::AStartInTheNight_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<int>("times");
    const auto rows = [](const char* zone, const char* change,
                         std::initializer_list<std::pair<const char*, int>> starts) {
        for (const auto& [start, times] : starts)
            QTest::addRow("%s %.10s %s", zone, change, start)
                << QByteArray(zone) << QString::fromLatin1(change) << QByteArray(start) << times;
    };
    // Clocks are put forward: the times between do not exist.
    rows("Europe/Rome", "2024-03-31T01:00:00",
         {{"01:59:59", 1},
          {"02:00:00", 0},
          {"02:00:05", 0},
          {"02:30:00", 0},
          {"02:59:59", 0},
          {"03:00:03", 1},
          {"03:30:00", 1}});
    rows("America/Los_Angeles", "2024-03-10T10:00:00", {{"01:30:00", 1}, {"02:30:00", 0}, {"03:00:03", 1}});
    rows("Australia/Sydney", "2024-10-05T16:00:00", {{"01:30:00", 1}, {"02:30:00", 0}, {"03:00:03", 1}});
    rows("Australia/Lord_Howe", "2024-10-05T15:30:00", {{"01:45:00", 1}, {"02:15:00", 0}, {"02:30:03", 1}});
    rows("Europe/Rome", "2040-03-25T01:00:00", {{"01:30:00", 1}, {"02:30:00", 0}, {"03:00:03", 1}});
    // Clocks are put back: the times before it come twice.
    rows("Europe/Rome", "2024-10-27T01:00:00",
         {{"02:00:03", 2}, {"02:30:00", 2}, {"02:59:59", 2}, {"03:00:00", 1}, {"03:00:05", 1}, {"03:30:00", 1}});
    rows("America/Los_Angeles", "2024-11-03T09:00:00", {{"01:30:00", 2}, {"02:00:05", 1}, {"02:30:00", 1}});
    rows("Australia/Sydney", "2024-04-06T16:00:00", {{"02:30:00", 2}, {"03:30:00", 1}});
    rows("Australia/Lord_Howe", "2024-04-06T15:00:00", {{"01:45:00", 2}, {"02:15:00", 1}});
    rows("Europe/Rome", "2040-10-28T01:00:00", {{"02:30:00", 2}, {"03:30:00", 1}});
}

void ClockNightsTest::AStartInTheNight()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, change);
    QFETCH(QByteArray, start);
    QFETCH(int, times);
    const TimeZone here(zone);
    Before(change, start + " Volume|1");
    Pass(3 * 3600);
    QCOMPARE(TakeRequests(), QStringList(times, QString::fromLatin1(start) + u" SetMasterVolume d 1"_s));
    // A time that is left out is told.
    EXPECT_LOG(LEVEL_WARNING, (LogLines(times == 0 ? 1 : 0, Missed("5 (Volume)", 1, start, LOCAL_FORWARD))));
}

void ClockNightsTest::TheFirstSecondsAfterTheChange_data()
{
    const QString forward = u"2024-03-31T01:00:00"_s;
    const QString back = u"2024-10-27T01:00:00"_s;
    // starts: over all phases; before the clock is put back it comes in each
    Rows<QString, QByteArray, int>::Add({
        {"forward, the first second", forward, "03:00:00", 0},
        {"forward, a second later", forward, "03:00:01", 5},
        {"forward, two seconds later", forward, "03:00:02", 10},
        {"forward, three seconds later", forward, "03:00:03", 15},
        {"back, the first second", back, "02:00:00", 15 + 0},
        {"back, a second later", back, "02:00:01", 15 + 5},
        {"back, two seconds later", back, "02:00:02", 15 + 10},
        {"back, three seconds later", back, "02:00:03", 15 + 15},
    });
}

void ClockNightsTest::TheFirstSecondsAfterTheChange()
{
    const auto& [change, start, starts] = Rows<QString, QByteArray, int>::Current();
    const TimeZone here("Europe/Rome");
    int found = 0;
    for (int phase = 1; phase <= PHASES; ++phase)
    {
        Before(change, start + " Volume|1");
        // Around the first time, if there are two, and then around the change; nothing is near in between.
        Pass(NEAR_S, phase * PHASE_MS);
        Time().Advance_s(3600 - NEAR_S);
        Pass(NEAR_S, phase * PHASE_MS);
        const auto requests = static_cast<int>(TakeRequests().size());
        found += requests;
        // Where it comes twice, the first time has been answered already.
        EXPECT_LOG(LEVEL_WARNING, (LogLines(requests == 0 ? 1 : 0, Missed("5 (Volume)", 1, start, LOCAL_FORWARD))));
    }
    QCOMPARE(found, starts);
}

void ClockNightsTest::AMessageRightAfterARepeatedHourComesTwice()
{
    const TimeZone here("Europe/Rome");
    Before(u"2024-10-27T01:00:00"_s, "03:00:05 PlayMessage|gong.mp3");
    Pass(3600 + 90);
    const QStringList expected{u"02:59:57 PlayFile ss gong.mp3 03:00:05"_s};
    QCOMPARE(TakeRequests(), expected);
    EndMessage();
    Pass(3600);
    QCOMPARE(TakeRequests(), expected);
}

void ClockNightsTest::AMessageThatStillPlaysComesOnce()
{
    const TimeZone here("Europe/Rome");
    Before(u"2024-10-27T01:00:00"_s, "02:30:00 PlayMessage|gong.mp3");
    Pass(2 * 3600 + 1800);
    QCOMPARE(TakeRequests(), QStringList{u"02:29:52 PlayFile ss gong.mp3 02:30:00"_s});
}

void ClockNightsTest::APlaylistInASkippedHourIsJoinedLate_data()
{
    Rows<QByteArray, QStringList>::Add({
        {"02:58:00", "02:58:00", {}},
        {"02:58:40", "02:58:40", {u"03:00:00 PlayPlaylist ssusb day  3 02:58:40 false"_s}},
        {"02:59:30", "02:59:30", {u"03:00:00 PlayPlaylist ssusb day  2 02:59:30 false"_s}},
    });
}

void ClockNightsTest::APlaylistInASkippedHourIsJoinedLate()
{
    const auto& [start, requests] = Rows<QByteArray, QStringList>::Current();
    const TimeZone here("Europe/Rome");
    WritePlaylist();
    Before(u"2024-03-31T01:00:00"_s, start + " PlayPlaylist|day");
    Pass(3600 + 60);
    QCOMPARE(TakeRequests(), requests);
    if (requests.isEmpty())
        EXPECT_LOG(LEVEL_WARNING, {Missed("2 (PlayPlaylist)", 1, start, LOCAL_FORWARD)});
    for (const QString& record : LogRecorder::Messages(LEVEL_WARNING))
        QVERIFY(record.startsWith(u"Task PlayPlaylist IsDelayed but still valid"_s));
    LogRecorder::Clear();
}

void ClockNightsTest::TheNextDayIsAsAlways_data()
{
    Rows<QString>::Add({
        {"after the clock was put forward", u"2024-03-31T01:00:00"_s},
        {"after the clock was put back", u"2024-10-27T01:00:00"_s},
    });
}

void ClockNightsTest::TheNextDayIsAsAlways()
{
    const QString& change = Rows<QString>::Current();
    const TimeZone here("Europe/Rome");
    Before(change, "02:30:00 Volume|1");
    Pass(3 * 3600);
    TakeRequests();
    LogRecorder::Clear();
    Pass(24 * 3600);
    QCOMPARE(TakeRequests(), QStringList{u"02:30:00 SetMasterVolume d 1"_s});
}

OZNA_CASE(ClockNights, ClockNightsTest)
#include "tst_ClockNights.moc"
