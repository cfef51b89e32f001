#include "Action.h"
#include "ActionLine.h"
#include "FakeTask.h"
#include "Suite.h"
#include "UnitTest.h"

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

// clang-format off
constexpr Chart CHARTS[] = {
    // early              ready                  lost
    {"Volume", TASK_VOLUME, 0,
     "..eeeeeeeeeeee.....", "..............rrr..", "..................."},
    {"Light", TASK_LIGHT, 0,
     "..eeeeeeeeeeee.....", "..............rrr..", "..................."},
    {"StopMessage", TASK_STOP_MESSAGE, 0,
     "..eeeeeeeeeeee.....", "..............rrr..", "..................."},
    {"PlayStream", TASK_PLAY_STREAM, 0,
     "..eeeeeeeeeeee.....", "..............rrr..", "..................."},
    {"PlayMessage", TASK_PLAY_MESSAGE, 0,
     "..eeeeeeeeeeee.....", "......rrrrrrrrrrr..", "..........llll....."},
    {"PlayPlaylist of one track", TASK_PLAY_PLAYLIST, 0,
     "..eeeeeeeeeeee.....", "......rrrrrrrrrrr..", "..........llll....."},
    {"PlayPlaylist, 3 s", TASK_PLAY_PLAYLIST, 3,
     "..eeeeeeeeeeeedddd.", "......rrrrrrrrrrrd.", "..........llll....."},
    {"PlayPlaylist, 300 s", TASK_PLAY_PLAYLIST, 300,
     "..eeeeeeeeeeeeddddd", "......rrrrrrrrrrrdd", "..........llll....."},
    // A start later in the day counts as yesterday's.
    {"PlayPlaylist, a day", TASK_PLAY_PLAYLIST, DAY_S,
     "ddeeeeeeeeeeeeddddd", "ddddddrrrrrrrrrrrdd", "..........llll....."},
    {"PlayPlaylist, 86389 s", TASK_PLAY_PLAYLIST, 86389,
     "ddeeeeeeeeeeeeddddd", "dddd..rrrrrrrrrrrdd", "..........llll....."},
    // Early compares signed, ready unsigned.
    {"a base task", TASK_LIGHT, 0xFFFFFFFFU,
     "..eeeeeeeeeeee.....", "ddddddddddddddrrrdd", "..................."},
    {"any task that tolerates", TASK_VOLUME, 3,
     "..eeeeeeeeeeeedddd.", "..............rrrd.", "..................."},
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
        early = {"5 [Action.cpp] Task " + name + " IsEarly: active in <12 seconds"};
    EXPECT_LOG(9, (early));
    QCOMPARE(action.m_delay, 77);

    QCOMPARE(action.IsReady(), chart->ready[column] != '.');
    LogLines ready;
    if (chart->ready[column] == 'r')
        ready = {"5 [Action.cpp] Task " + name + " IsReady (in time)"};
    else if (chart->ready[column] == 'd')
        ready = {"2 [Action.cpp] Task " + name +
                 " IsDelayed but still valid (accumulated delay: " + QByteArray::number(lateness) +
                 " s, tolerated delay: " + QByteArray::number(chart->tolerance_s) + " s)"};
    EXPECT_LOG(9, (ready));
    // What a late start is late by is kept, also when it is too much.
    QCOMPARE(action.m_delay, chart->ready[column] == 'r' || chart->tolerance_s == 0 ? 0 : lateness);

    QCOMPARE(action.IsLost(), chart->lost[column] == 'l');
    LogLines lost;
    if (chart->lost[column] == 'l')
        lost = {"2 [Action.cpp] Task " + name + " IsLost (ready in less than 4 s)"};
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

OZNA_CASE(ActionBounds, ActionBoundsTest)
#include "tst_ActionBounds.moc"
