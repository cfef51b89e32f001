#include "Suite.h"
#include "TimeZone.h"
#include "base/Moment.h"
#include "html/Lanes.h"
#include "html/WeekLayout.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A marked entry has a line for its mark.
const WeekLayout::RoomOf ROOM = [](const Event& /*event*/, bool isCarried, int /*columns*/) {
    return WeekLayout::Room{{isCarried ? 1 : 2, 1}, 1};
};

const QTime MIDNIGHT(0, 0);

qint64 At(const char* text)
{
    return Moment::Parse_ms(u"moment"_s, QLatin1String(text));
}

Event Playing(const char* begin, const char* end)
{
    Event event;
    event.type = TASK_PLAY_RADIO_FM;
    event.plays = true;
    event.begin_ms = event.moment_ms = event.due_ms = At(begin);
    if (*end != '\0')
        event.end_ms = At(end);
    return event;
}

// Whether each entry stands below the one before, and the last one within the day.
bool IsApart(const WeekLayout::Day& day, const WeekLayout::Week& week, size_t width)
{
    double free = 0;
    for (const WeekLayout::Entry& entry : day.entries)
    {
        if (entry.top.at(width) < free)
            return false;
        free = entry.top.at(width) + entry.room.rows.at(width);
    }
    return free <= week.scale.at(width).Rows();
}

// "25: 22:00-24:00>" for each day that has a part; "<" goes on from before, ">" goes on, "~" has an open end.
QString Parts(const std::vector<WeekLayout::Week>& weeks)
{
    QStringList texts;
    for (const WeekLayout::Week& week : weeks)
    {
        for (const WeekLayout::Day& day : week.days)
        {
            for (const WeekLayout::Bar& bar : day.bars)
                texts.append(u"%1: %2%3-%4%5"_s.arg(day.date.day())
                                 .arg(QLatin1String(bar.isBegun ? "<" : ""))
                                 .arg(bar.begin_s / 60)
                                 .arg(bar.end_s / 60)
                                 .arg(QLatin1String(bar.isOpen   ? "~"
                                                    : bar.goesOn ? ">"
                                                                 : "")));
        }
    }
    return texts.join(u' ');
}

} // namespace

class WeekLayoutTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void BarsThatOverlapStandSideBySide_data();
    void BarsThatOverlapStandSideBySide();
    void APlaybackIsCutAtMidnight_data();
    void APlaybackIsCutAtMidnight();
    void EveryEventHasOneEntryOfItsOwn();
    void ASpanIsCutIntoWeeks_data();
    void ASpanIsCutIntoWeeks();
};

void WeekLayoutTest::BarsThatOverlapStandSideBySide_data()
{
    using Bars = std::vector<Lanes::Extent>;
    QTest::addColumn<Bars>("bars");
    QTest::addColumn<std::vector<int>>("lanes");
    QTest::newRow("none") << Bars{} << std::vector<int>{};
    QTest::newRow("one after the other") << Bars{{0, 1}, {1, 2}, {2.5, 3}} << std::vector<int>{0, 0, 0};
    QTest::newRow("two at once") << Bars{{0, 2}, {1, 3}} << std::vector<int>{0, 1};
    QTest::newRow("the same") << Bars{{0, 2}, {0, 2}, {0, 2}} << std::vector<int>{0, 1, 2};
    QTest::newRow("a lane is used again") << Bars{{0, 9}, {1, 2}, {2, 3}} << std::vector<int>{0, 1, 1};
    QTest::newRow("the first free one") << Bars{{0, 2}, {1, 9}, {3, 4}} << std::vector<int>{0, 1, 0};
    QTest::newRow("short ones do not touch") << Bars{{0, 0}, {0.1, 0.1}, {0.3, 0.3}} << std::vector<int>{0, 1, 0};
}

void WeekLayoutTest::BarsThatOverlapStandSideBySide()
{
    QFETCH(const std::vector<Lanes::Extent>, bars);
    std::vector<Lanes::Bar> alike;
    std::vector<Lanes::Bar> narrow;
    std::vector<Lanes::Bar> wide;
    for (const Lanes::Extent& bar : bars)
    {
        alike.push_back({bar, bar});
        // In the other layout they stand below one another.
        const auto row = static_cast<double>(alike.size());
        narrow.push_back({bar, Lanes::Extent{row, row + 1}});
        wide.push_back({Lanes::Extent{row, row + 1}, bar});
    }
    QTEST(Lanes::Assign(alike), "lanes");
    QTEST(Lanes::Assign(narrow), "lanes");
    QTEST(Lanes::Assign(wide), "lanes");
}

void WeekLayoutTest::APlaybackIsCutAtMidnight_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<QString>("parts");
    const auto row = [](const char* name, const char* begin, const char* end, const char* parts) {
        QTest::newRow(name) << QByteArray(begin) << QByteArray(end) << QString::fromLatin1(parts);
    };
    row("within a day", "2024-03-29T10:00", "2024-03-29T11:00", "29: 600-660");
    row("over midnight", "2024-03-29T23:00", "2024-03-30T01:00", "29: 1380-1440> 30: <0-60");
    row("up to midnight", "2024-03-29T23:00", "2024-03-30T00:00", "29: 1380-1440");
    row("from midnight on", "2024-03-30T00:00", "2024-03-30T01:00", "30: 0-60");
    row("over a day", "2024-03-29T23:00", "2024-03-31T01:00", "29: 1380-1440> 30: <0-1440> 31: <0-60");
    row("over the missing hour", "2024-03-31T01:00", "2024-03-31T04:00", "31: 60-240");
    row("with an open end", "2024-03-31T23:00", "", "31: 1380-1440> 1: <0-720~");
    row("beyond the end", "2024-04-01T11:00", "2024-04-01T13:00", "1: 660-720>");
    row("from before", "2024-03-20T11:00", "2024-03-29T10:00", "29: <540-600");
    row("all the time", "2024-03-20T11:00", "", "29: <540-1440> 30: <0-1440> 31: <0-1440> 1: <0-720~");
    row("of no length", "2024-03-29T10:00", "2024-03-29T10:00", "29: 600-600");
}

void WeekLayoutTest::APlaybackIsCutAtMidnight()
{
    QFETCH(const QByteArray, begin);
    QFETCH(const QByteArray, end);
    const TimeZone zone("Europe/Rome");
    const auto weeks = WeekLayout::Weeks({Playing(begin, end)}, At("2024-03-29T09:00"), At("2024-04-01T12:00"), ROOM);
    QTEST(Parts(weeks), "parts");
}

void WeekLayoutTest::EveryEventHasOneEntryOfItsOwn()
{
    const TimeZone zone("Europe/Rome");
    // The first one is marked, as it plays before that.
    std::vector<Event> events{Playing("2024-10-20T10:00", ""), Playing("2024-10-26T23:00", "2024-10-28T01:00")};
    // In the night in which an hour comes twice, and asked for at the very end for what comes after it.
    events.push_back(Playing("2024-10-27T02:30", "2024-10-27T02:40"));
    events.push_back(Playing("2024-11-04T00:00:05", ""));
    const auto weeks = WeekLayout::Weeks(events, At("2024-10-26"), At("2024-11-04"), ROOM);
    std::vector<int> own(events.size());
    int carried = 0;
    for (const WeekLayout::Week& week : weeks)
    {
        for (const WeekLayout::Day& day : week.days)
        {
            for (const WeekLayout::Entry& entry : day.entries)
                (entry.isCarried ? carried : own[entry.event]) += 1;
            for (size_t width = 0; width < WeekLayout::WIDTHS; ++width)
                QVERIFY2(IsApart(day, week, width), qPrintable(day.date.toString()));
        }
    }
    QCOMPARE(own, std::vector<int>(events.size(), 1));
    QCOMPARE(carried, 8 + 2);
}

void WeekLayoutTest::ASpanIsCutIntoWeeks_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("until");
    QTest::addColumn<std::vector<size_t>>("days");
    using Sizes = std::vector<size_t>;
    QTest::newRow("day") << QByteArray("2024-05-15") << QByteArray("2024-05-16") << Sizes{1};
    QTest::newRow("week") << QByteArray("2024-03-25") << QByteArray("2024-04-01") << Sizes{7};
    QTest::newRow("eight days") << QByteArray("2024-05-15") << QByteArray("2024-05-23") << Sizes{7, 1};
    QTest::newRow("a week from noon") << QByteArray("2024-05-15T12:00") << QByteArray("2024-05-22T12:00")
                                      << Sizes{7, 1};
    QTest::newRow("nothing") << QByteArray("2024-05-15") << QByteArray("2024-05-15") << Sizes{1};
}

void WeekLayoutTest::ASpanIsCutIntoWeeks()
{
    QFETCH(const QByteArray, from);
    QFETCH(const QByteArray, until);
    const auto weeks = WeekLayout::Weeks({}, At(from), At(until), ROOM);
    std::vector<size_t> days(weeks.size());
    std::ranges::transform(weeks, days.begin(), [](const WeekLayout::Week& week) { return week.days.size(); });
    QTEST(days, "days");
}

OZNA_CASE(WeekLayout, WeekLayoutTest)
#include "tst_WeekLayout.moc"
