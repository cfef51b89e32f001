#include "Clock.h"
#include "Log.h"
#include "MissedTest.h"
#include "Rows.h"
#include "Suite.h"
#include "TimeZone.h"

#include <QDateTime>

using namespace MissedLines;
using namespace Qt::StringLiterals;

namespace
{

const QDate FRIDAY(2024, 5, 17);

const QString VOLUME_1 = u"08:30:00 SetMasterVolume d 1"_s;

} // namespace

// The clock is set while the schedule runs.
class ClockStepsTest final : public MissedTest
{
    Q_OBJECT
private Q_SLOTS:
    void TodayComesAfter1970();
    void LightAndRadioFollowTheClockOfTheLoad();
    void BackOverAStartItComesAgain();
    void BackByASecondItComesAgainByLuck();
    void ForwardOverAStartItIsMissed_data();
    void ForwardOverAStartItIsMissed();
    void ForwardByUpToTwoSecondsItStillComes();
    void ForwardByADayItComesWhereItIsDue();
    void AnActionFoundEarlyWaitsForItsTime();
    void AnActionFoundEarlyAndMissedComesOnTheNextDay();

private:
    void Set(const QDate& date, const QTime& time) { Time().SetLocal(date, time); }
};

void ClockStepsTest::TodayComesAfter1970()
{
    Time().SetUtc_ms(0);
    const QDateTime loaded(Clock::LocalToday(), Clock::TimeOfDay());
    WritePlaylist();
    StartSchedule({"08:30:00 Volume|1", "08:29:00 Volume|2", "08:29:30 PlayPlaylist|day"});
    Pass(60);
    QCOMPARE(TakeRequests(), QStringList());
    // Of what was due before only the playlist is joined. The others are told: the latest, and how many there were.
    Set(WEDNESDAY, QTime(8, 29, 45));
    Pass(60);
    const QStringList expected{u"08:29:48 PlayPlaylist ssusb day  2 08:29:30 false"_s, VOLUME_1};
    QCOMPARE(TakeRequests(), expected);
    struct Start
    {
        QDateTime due;
        QByteArray task;
        int line;
    };
    QList<Start> starts;
    for (QDate date = loaded.date(); date <= WEDNESDAY; date = date.addDays(1))
    {
        starts.append({QDateTime(date, QTime(8, 29)), VOLUME, 2});
        starts.append({QDateTime(date, QTime(8, 29, 30)), PLAYLIST, 3});
        starts.append({QDateTime(date, QTime(8, 30)), VOLUME, 1});
    }
    starts.removeIf([&](const Start& start) { return start.due <= loaded || start.due.date() == WEDNESDAY; });
    LogLines lines;
    for (const Start& start : starts.last(19))
        lines.append(
            Missed(start.task, start.line, start.due.toString(u"yyyy-MM-dd HH:mm:ss").toLatin1(), CLOCK_FORWARD));
    lines.append(Missed(VOLUME, 2, "08:29:00", CLOCK_FORWARD));
    lines.append(Others(static_cast<int>(starts.size()) - 19));
    lines.append("2 [Action.cpp] Task PlayPlaylist IsDelayed but still valid (accumulated delay: 18 s, tolerated "
                 "delay: 94 s)");
    EXPECT_LOG(LEVEL_WARNING, (lines));
}

void ClockStepsTest::LightAndRadioFollowTheClockOfTheLoad()
{
    const TimeZone utc("UTC");
    Set(WEDNESDAY, QTime(6, 0));
    StartSchedule({"07:00:00 Light|80", "07:30:00 PlayRadioFm|98.5"});
    Set(WEDNESDAY, QTime(12, 0));
    Pass(60);
    QCOMPARE(TakeRequests(), QStringList());
    QCOMPARE(Engine().Reload(), 0);
    Pass(6);
    const QStringList expected{u"12:01:03 SetIntensity u 80"_s, u"12:01:03 Switch b true"_s,
                               u"12:01:03 PlayRadioFm -"_s, u"12:01:03 RadioFmSetFrequency d 98.5"_s};
    QCOMPARE(TakeRequests(), expected);
    EXPECT_LOG(LEVEL_WARNING, {Missed("0 (Light)", 1, "07:00:00", CLOCK_FORWARD),
                               Missed("6 (PlayRadioFm)", 2, "07:30:00", CLOCK_FORWARD)});
}

void ClockStepsTest::BackOverAStartItComesAgain()
{
    for (const int back_s : {10, 3600, 86400})
    {
        StartBefore(15'000, {"08:30:00 Volume|1"});
        Pass(18);
        QCOMPARE(TakeRequests(), QStringList{VOLUME_1});
        Time().Step_s(-back_s);
        Pass(std::min(back_s, 7200) + 60);
        QCOMPARE(TakeRequests(), back_s == 86400 ? QStringList() : QStringList{VOLUME_1});
        Set(back_s == 86400 ? WEDNESDAY.addDays(-1) : WEDNESDAY.addDays(1), QTime(8, 29, 45));
        Pass(60);
        QCOMPARE(TakeRequests(), QStringList{VOLUME_1});
    }
}

void ClockStepsTest::BackByASecondItComesAgainByLuck()
{
    int again = 0;
    for (int phase_ms = 200; phase_ms <= 3000; phase_ms += 200)
    {
        StartBefore(15'000, {"08:30:00 Volume|1"});
        Pass(15, phase_ms);
        QCOMPARE(TakeRequests(), QStringList{VOLUME_1});
        Time().Step_s(-1);
        Pass(60, phase_ms);
        again += static_cast<int>(TakeRequests().size());
    }
    // A far pass has to fall into that second: four of the fifteen phases have one there.
    QCOMPARE(again, 4);
}

void ClockStepsTest::ForwardOverAStartItIsMissed_data()
{
    const QByteArray volume = "08:30:00 Volume|1";
    const QByteArray message = "08:30:00 PlayMessage|gong.mp3";
    Rows<QByteArray, QTime, QByteArray>::Add({
        {"a volume, by seconds", volume, QTime(8, 30, 3), VOLUME},
        {"a volume, by an hour", volume, QTime(9, 30), VOLUME},
        {"a message, by seconds", message, QTime(8, 30, 3), MESSAGE},
        {"a message, by an hour", message, QTime(9, 30), MESSAGE},
        {"a playlist, past its tolerance", "08:30:00 PlayPlaylist|day", QTime(8, 31, 35), PLAYLIST},
    });
}

void ClockStepsTest::ForwardOverAStartItIsMissed()
{
    const auto& [line, to, task] = Rows<QByteArray, QTime, QByteArray>::Current();
    WritePlaylist();
    for (const int before_s : {40, 9}) // far, and found early
    {
        StartBefore((before_s + 4) * 1000, {line});
        Pass(4);
        Set(WEDNESDAY, to);
        Pass(60);
        QCOMPARE(TakeRequests(), QStringList());
        EXPECT_LOG(LEVEL_WARNING, {Missed(task, 1, "08:30:00", CLOCK_FORWARD)});
    }
}

void ClockStepsTest::ForwardByUpToTwoSecondsItStillComes()
{
    for (const int late_s : {0, 1, 2})
    {
        StartBefore(15'000, {"08:30:00 Volume|1"});
        Pass(12);
        QCOMPARE(EarlyList(), QStringList{u"Volume 08:30:00"_s});
        Set(WEDNESDAY, DUE.addSecs(late_s));
        Pass(60);
        QCOMPARE(TakeRequests(), QStringList{DUE.addSecs(late_s).toString() + u" SetMasterVolume d 1"_s});
    }
}

void ClockStepsTest::ForwardByADayItComesWhereItIsDue()
{
    Set(FRIDAY, QTime(8, 29, 20));
    StartSchedule({"1111100 08:30:00 Volume|1", "0000010 08:30:00 Volume|2", "08:30:00 Volume|3"});
    Pass(3);
    Set(FRIDAY.addDays(1), QTime(8, 29, 23));
    Pass(60);
    const QStringList expected{u"08:30:00 SetMasterVolume d 2"_s, u"08:30:00 SetMasterVolume d 3"_s};
    QCOMPARE(TakeRequests(), expected);
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "2024-05-17 08:30:00", CLOCK_FORWARD),
                               Missed(VOLUME, 3, "2024-05-17 08:30:00", CLOCK_FORWARD)});
}

void ClockStepsTest::AnActionFoundEarlyWaitsForItsTime()
{
    for (const int back_s : {1, 60, 3600})
    {
        StartBefore(15'000, {"08:30:00 Volume|1"});
        Pass(6);
        QCOMPARE(EarlyList(), QStringList{u"Volume 08:30:00"_s});
        Time().Step_s(-back_s);
        Pass(5);
        QCOMPARE(EarlyList(), QStringList{u"Volume 08:30:00"_s});
        Pass(back_s + 60);
        QCOMPARE(TakeRequests(), QStringList{VOLUME_1});
        QCOMPARE(EarlyList(), QStringList());
    }
}

void ClockStepsTest::AnActionFoundEarlyAndMissedComesOnTheNextDay()
{
    Set(FRIDAY, QTime(8, 29, 45));
    StartSchedule({"1111100 08:30:00 Volume|1"});
    Pass(6);
    Set(FRIDAY, QTime(9, 30));
    Pass(60);
    QCOMPARE(TakeRequests(), QStringList());
    EXPECT_LOG(LEVEL_WARNING, {Missed(VOLUME, 1, "08:30:00", CLOCK_FORWARD)});
    // It is watched already, and nobody asks for the day again.
    Set(FRIDAY.addDays(1), QTime(8, 29));
    Pass(90);
    QCOMPARE(TakeRequests(), QStringList{VOLUME_1});
    Set(FRIDAY.addDays(2), QTime(8, 29));
    Pass(90);
    QCOMPARE(TakeRequests(), QStringList());
}

OZNA_CASE(ClockSteps, ClockStepsTest)
#include "tst_ClockSteps.moc"
