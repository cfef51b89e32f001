#include "Action.h"
#include "ActionLine.h"
#include "FakeTask.h"
#include "UnitTest.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

// Seconds to the start that a chart shows, from left to right.
constexpr int FIRST_S = 14;
constexpr int LAST_S = -4;
constexpr int DAY_S = 86400;

// What the predicates say at each second. Early: "e" starts soon, "d" late but tolerated. Ready: "r" in time, "d" late
// but tolerated. Lost: "l". A dot: no.
struct Chart
{
    const char* name;
    TaskType type;
    unsigned int tolerance_s;
    const char* early;
    const char* ready;
    const char* lost;
};

// clang-format off: the charts line up
//                                                        |---- ahead ---|  late
constexpr Chart CHARTS[] = {
    {"Volume", TASK_VOLUME, 0, "..eeeeeeeeeeee.....", "..............rrr..", "..................."},
    {"Light", TASK_LIGHT, 0, "..eeeeeeeeeeee.....", "..............rrr..", "..................."},
    {"StopMessage", TASK_STOP_MESSAGE, 0, "..eeeeeeeeeeee.....", "..............rrr..", "..................."},
    {"PlayStream", TASK_PLAY_STREAM, 0, "..eeeeeeeeeeee.....", "..............rrr..", "..................."},
    {"PlayMessage", TASK_PLAY_MESSAGE, 0, "..eeeeeeeeeeee.....", "......rrrrrrrrrrr..", "..........llll....."},
    {"PlayPlaylist of one track", TASK_PLAY_PLAYLIST, 0, "..eeeeeeeeeeee.....", "......rrrrrrrrrrr..",
     "..........llll....."},
    {"PlayPlaylist, 3 s", TASK_PLAY_PLAYLIST, 3, "..eeeeeeeeeeeedddd.", "......rrrrrrrrrrrd.", "..........llll....."},
    {"PlayPlaylist, 300 s", TASK_PLAY_PLAYLIST, 300, "..eeeeeeeeeeeeddddd", "......rrrrrrrrrrrdd",
     "..........llll....."},
    // A start later in the day counts as yesterday's.
    {"PlayPlaylist, a day", TASK_PLAY_PLAYLIST, DAY_S, "ddeeeeeeeeeeeeddddd", "ddddddrrrrrrrrrrrdd",
     "..........llll....."},
    {"PlayPlaylist, 86389 s", TASK_PLAY_PLAYLIST, 86389, "ddeeeeeeeeeeeeddddd", "dddd..rrrrrrrrrrrdd",
     "..........llll....."},
    // Early compares signed, ready unsigned.
    {"a base task", TASK_LIGHT, 0xFFFFFFFFU, "..eeeeeeeeeeee.....", "ddddddddddddddrrrdd", "..................."},
    {"any task that tolerates", TASK_VOLUME, 3, "..eeeeeeeeeeeedddd.", "..............rrrd.", "..................."},
};
// clang-format on

} // namespace

class ActionBoundsTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ThePredicatesBySecondsToTheStart_data();
    void ThePredicatesBySecondsToTheStart();
    void AFractionOfASecondCountsAsTheSecondBefore_data();
    void AFractionOfASecondCountsAsTheSecondBefore();
    void ATimeThatIsNone_data();
    void ATimeThatIsNone();
    void MidnightIsNeverEarly_data();
    void MidnightIsNeverEarly();
    void APlaylistOfAnEarlierDayIsTolerated_data();
    void APlaylistOfAnEarlierDayIsTolerated();
};

void ActionBoundsTest::ThePredicatesBySecondsToTheStart_data()
{
    QTest::addColumn<const Chart*>("chart");
    QTest::addColumn<int>("seconds");
    for (const Chart& chart : CHARTS)
    {
        for (int seconds = FIRST_S; seconds >= LAST_S; --seconds)
            QTest::addRow("%s, %d s to start", chart.name, seconds) << &chart << seconds;
    }
}

void ActionBoundsTest::ThePredicatesBySecondsToTheStart()
{
    QFETCH(const Chart*, chart);
    QFETCH(int, seconds);
    const int column = FIRST_S - seconds;
    QCOMPARE(qstrlen(chart->early), size_t{FIRST_S - LAST_S + 1});
    QCOMPARE(qstrlen(chart->ready), size_t{FIRST_S - LAST_S + 1});
    QCOMPARE(qstrlen(chart->lost), size_t{FIRST_S - LAST_S + 1});

    Action action(ActionLine{.start = u"12:00:00"_s}.Text());
    auto* const task = new FakeTask(chart->type);
    task->m_tolerance_s = chart->tolerance_s;
    action.m_task.reset(task);
    action.m_delay = 77;
    Time().SetLocal(QTime(12, 0).addSecs(-seconds));
    LogRecorder::Clear();
    const QByteArray name = task->GetName().toUtf8();
    const int lateness = seconds > 0 ? DAY_S - seconds : -seconds;

    QCOMPARE(action.IsEarly(), chart->early[column] != '.');
    LogLines early;
    if (chart->early[column] == 'e')
        early = {{5, "[Action.cpp] Task " + name + " IsEarly: active in <12 seconds"}};
    EXPECT_LOG(9, (early));
    QCOMPARE(action.m_delay, 77);

    QCOMPARE(action.IsReady(), chart->ready[column] != '.');
    LogLines ready;
    if (chart->ready[column] == 'r')
        ready = {{5, "[Action.cpp] Task " + name + " IsReady (in time)"}};
    else if (chart->ready[column] == 'd')
        ready = {{2, "[Action.cpp] Task " + name +
                         " IsDelayed but still valid (accumulated delay: " + QByteArray::number(lateness) +
                         " s, tolerated delay: " + QByteArray::number(chart->tolerance_s) + " s)"}};
    EXPECT_LOG(9, (ready));
    // What a late start is late by is kept, also when it is too much.
    QCOMPARE(action.m_delay, chart->ready[column] == 'r' || chart->tolerance_s == 0 ? 0 : lateness);

    QCOMPARE(action.IsLost(), chart->lost[column] == 'l');
    LogLines lost;
    if (chart->lost[column] == 'l')
        lost = {{2, "[Action.cpp] Task " + name + " IsLost (ready in less than 4 s)"}};
    EXPECT_LOG(9, (lost));
    QCOMPARE(task->m_calls, QStringList());
}

void ActionBoundsTest::AFractionOfASecondCountsAsTheSecondBefore_data()
{
    QTest::addColumn<int>("offset_ms"); // of now from the start
    QTest::addColumn<bool>("early");
    QTest::addColumn<bool>("volumeReady");
    QTest::addColumn<bool>("messageReady");
    QTest::addColumn<bool>("messageLost");
    const auto row = [](int offset_ms, bool early, bool volumeReady, bool messageReady, bool messageLost) {
        QTest::addRow("%d ms", offset_ms) << offset_ms << early << volumeReady << messageReady << messageLost;
    };
    row(-13'000, false, false, false, false);
    row(-12'001, false, false, false, false);
    row(-12'000, true, false, false, false);
    row(-11'999, true, false, false, false);
    row(-8'001, true, false, false, false);
    row(-8'000, true, false, true, false);
    row(-4'001, true, false, true, false);
    row(-4'000, true, false, true, true);
    row(-1'000, true, false, true, true);
    row(-999, true, false, true, true);
    row(-1, true, false, true, true);
    row(0, false, true, true, false);
    row(1, false, true, true, false);
    row(999, false, true, true, false);
    row(2'999, false, true, true, false);
    row(3'000, false, false, false, false);
}

void ActionBoundsTest::AFractionOfASecondCountsAsTheSecondBefore()
{
    QFETCH(int, offset_ms);
    QFETCH(bool, early);
    QFETCH(bool, volumeReady);
    QFETCH(bool, messageReady);
    QFETCH(bool, messageLost);
    Action volume(ActionLine{.start = u"12:00:00"_s}.Text());
    volume.m_task = std::make_unique<FakeTask>(TASK_VOLUME);
    Action message(ActionLine{.start = u"12:00:00"_s}.Text());
    message.m_task = std::make_unique<FakeTask>(TASK_PLAY_MESSAGE);
    Time().SetLocal(QTime(12, 0).addMSecs(offset_ms));
    QCOMPARE(volume.IsEarly(), early);
    QCOMPARE(message.IsEarly(), early);
    QCOMPARE(volume.IsReady(), volumeReady);
    QCOMPARE(message.IsReady(), messageReady);
    QCOMPARE(volume.IsLost(), false);
    QCOMPARE(message.IsLost(), messageLost);
    LogRecorder::Clear();
}

void ActionBoundsTest::ATimeThatIsNone_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QTime>("now");
    QTest::addColumn<unsigned int>("tolerance_s");
    QTest::addColumn<bool>("early");
    QTest::addColumn<bool>("ready");
    const auto row = [](const char* name, const QString& start, const QTime& now, unsigned int tolerance_s, bool early,
                        bool ready) { QTest::newRow(name) << start << now << tolerance_s << early << ready; };
    row("08:60:00 is near before nine", u"08:60:00"_s, QTime(8, 59, 50), 0, true, false);
    row("08:60:00 is ready at nine", u"08:60:00"_s, QTime(9, 0), 0, false, true);
    row("24:00:05 is near before midnight", u"24:00:05"_s, QTime(23, 59, 55), 0, true, false);
    row("24:00:05 is a day ahead after midnight", u"24:00:05"_s, QTime(0, 0, 5), 0, false, false);
    row("25:00:00 is never near at one", u"25:00:00"_s, QTime(0, 59, 55), 0, false, false);
    row("25:00:00 is never ready at one", u"25:00:00"_s, QTime(1, 0), 0, false, false);
    row("99:99:99 without tolerance", u"99:99:99"_s, QTime(12, 0), 0, false, false);
    // It has no lateness, so any tolerance will do.
    row("99:99:99 with tolerance", u"99:99:99"_s, QTime(12, 0), 1, true, true);
    row("25:00:00 with tolerance", u"25:00:00"_s, QTime(12, 0), 300, true, true);
    row("the greatest hour", u"2147483647:00:00"_s, QTime(12, 0), 0, false, false);
    row("the least hour", u"-2147483648:00:00"_s, QTime(12, 0), 0, false, false);
    row("the greatest everything", u"2147483647:2147483647:2147483647"_s, QTime(12, 0), 0, false, false);
    row("the least everything", u"-2147483648:-2147483648:-2147483648"_s, QTime(12, 0), 0, false, false);
}

void ActionBoundsTest::ATimeThatIsNone()
{
    QFETCH(QString, start);
    QFETCH(QTime, now);
    QFETCH(unsigned int, tolerance_s);
    QFETCH(bool, early);
    QFETCH(bool, ready);
    Action action(ActionLine{.start = start}.Text());
    auto* const task = new FakeTask(TASK_VOLUME);
    task->m_tolerance_s = tolerance_s;
    action.m_task.reset(task);
    Time().SetLocal(now);
    QCOMPARE(action.IsEarly(), early);
    QCOMPARE(action.IsReady(), ready);
    QCOMPARE(action.IsLost(), false);
    QCOMPARE(action.m_delay, 0);
    LogRecorder::Clear();
}

void ActionBoundsTest::MidnightIsNeverEarly_data()
{
    QTest::addColumn<QTime>("now");
    QTest::addColumn<QString>("start");
    QTest::addColumn<bool>("early");
    QTest::addColumn<bool>("ready");
    const auto row = [](const QTime& now, const QString& start, bool early, bool ready) {
        QTest::addRow("%s at %s", qPrintable(start), qPrintable(now.toString(Qt::ISODateWithMs)))
            << now << start << early << ready;
    };
    const QString midnight = u"00:00:00"_s;
    row(QTime(23, 59, 48), midnight, false, false);
    row(QTime(23, 59, 50), midnight, false, false);
    row(QTime(23, 59, 59, 999), midnight, false, false);
    row(QTime(0, 0), midnight, false, true);
    row(QTime(0, 0, 2, 999), midnight, false, true);
    row(QTime(0, 0, 3), midnight, false, false);
    row(QTime(23, 59, 59, 999), u"00:00:01"_s, false, false);
    row(QTime(0, 0), u"00:00:01"_s, true, false);
    row(QTime(0, 0, 0, 999), u"00:00:01"_s, true, false);
    row(QTime(0, 0, 1), u"00:00:01"_s, false, true);
    row(QTime(0, 0), u"00:00:12"_s, true, false);
    row(QTime(0, 0), u"00:00:13"_s, false, false);
}

void ActionBoundsTest::MidnightIsNeverEarly()
{
    QFETCH(QTime, now);
    QFETCH(QString, start);
    QFETCH(bool, early);
    QFETCH(bool, ready);
    Action action(ActionLine{.start = start}.Text());
    action.m_task = std::make_unique<FakeTask>(TASK_VOLUME);
    Time().SetLocal(now);
    QCOMPARE(action.IsEarly(), early);
    QCOMPARE(action.IsReady(), ready);
    QCOMPARE(action.IsLost(), false);
}

void ActionBoundsTest::APlaylistOfAnEarlierDayIsTolerated_data()
{
    QTest::addColumn<QTime>("now");
    QTest::addColumn<unsigned int>("tolerance_s");
    QTest::addColumn<int>("delay"); // -1: too late
    const auto row = [](const QTime& now, unsigned int tolerance_s, int delay) {
        QTest::addRow("at %s, %u s", qPrintable(now.toString(Qt::ISODateWithMs)), tolerance_s)
            << now << tolerance_s << delay;
    };
    // It starts at 23:00:00.
    row(QTime(23, 1), 300, 60);
    row(QTime(23, 5), 300, 300);
    row(QTime(23, 5, 0, 999), 300, 300);
    row(QTime(23, 5, 1), 300, -1);
    row(QTime(0, 30), 5400, 5400);
    row(QTime(0, 30), 5399, -1);
    row(QTime(1, 0), 7200, 7200);
    row(QTime(22, 0), 82800, 82800);
    row(QTime(22, 0), 82799, -1);
    row(QTime(22, 0), static_cast<unsigned int>(std::numeric_limits<int>::max()), 82800);
    row(QTime(22, 0), 0, -1);
}

void ActionBoundsTest::APlaylistOfAnEarlierDayIsTolerated()
{
    QFETCH(QTime, now);
    QFETCH(unsigned int, tolerance_s);
    QFETCH(int, delay);
    Action action(ActionLine{.start = u"23:00:00"_s}.Text());
    auto* const task = new FakeTask(TASK_PLAY_PLAYLIST);
    task->m_tolerance_s = tolerance_s;
    action.m_task.reset(task);
    Time().SetLocal(now);
    QCOMPARE(action.IsEarly(), delay >= 0);
    QCOMPARE(action.IsReady(), delay >= 0);
    if (delay < 0)
        return;
    QCOMPARE(action.m_delay, delay);
    action.Start();
    QCOMPARE(task->m_calls, (QStringList{u"PrepareDelayed %1"_s.arg(delay), u"Run"_s}));
    LogRecorder::Clear();
}

QTEST_GUILESS_MAIN(ActionBoundsTest)
#include "tst_ActionBounds.moc"
