#include "Action.h"
#include "ActionLine.h"
#include "FakeTask.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"

#include <limits>

using namespace Qt::StringLiterals;

class ActionOddTimesTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ATimeThatIsNone_data();
    void ATimeThatIsNone();
    void MidnightIsNeverEarly_data();
    void MidnightIsNeverEarly();
    void APlaylistOfAnEarlierDayIsTolerated_data();
    void APlaylistOfAnEarlierDayIsTolerated();
};

void ActionOddTimesTest::ATimeThatIsNone_data()
{
    Rows<QString, QTime, unsigned int, bool, bool, int>::Add({
        {"08:60:00 is near before nine", u"08:60:00"_s, QTime(8, 59, 50), 0, true, false, 0},
        {"08:60:00 is ready at nine", u"08:60:00"_s, QTime(9, 0), 0, false, true, 0},
        {"24:00:05 is near before midnight", u"24:00:05"_s, QTime(23, 59, 55), 0, true, false, 0},
        {"24:00:05 is a day ahead after midnight", u"24:00:05"_s, QTime(0, 0, 5), 0, false, false, 0},
        {"25:00:00 is never near at one", u"25:00:00"_s, QTime(0, 59, 55), 0, false, false, 0},
        {"25:00:00 is never ready at one", u"25:00:00"_s, QTime(1, 0), 0, false, false, 0},
        {"99:99:99 without tolerance", u"99:99:99"_s, QTime(12, 0), 0, false, false, 0},
        // Its lateness counts from midnight.
        {"99:99:99 at midnight", u"99:99:99"_s, QTime(0, 0), 1, true, true, 0},
        {"99:99:99 late by what it may", u"99:99:99"_s, QTime(0, 0, 1), 1, true, true, 1},
        {"99:99:99 too late", u"99:99:99"_s, QTime(0, 0, 2), 1, false, false, 2},
        {"25:00:00 is late within its tolerance", u"25:00:00"_s, QTime(0, 5), 300, true, true, 300},
        {"24:00:00 is too late in the afternoon", u"24:00:00"_s, QTime(14, 0), 300, false, false, 50400},
        {"24:00:00 with half a day of tolerance", u"24:00:00"_s, QTime(12, 0), 43200, true, true, 43200},
        {"-1:00:00 is late since midnight too", u"-1:00:00"_s, QTime(0, 1), 60, true, true, 60},
        {"the greatest hour", u"2147483647:00:00"_s, QTime(12, 0), 0, false, false, 0},
        {"the least hour", u"-2147483648:00:00"_s, QTime(12, 0), 0, false, false, 0},
        {"the greatest everything", u"2147483647:2147483647:2147483647"_s, QTime(12, 0), 0, false, false, 0},
        {"the least everything", u"-2147483648:-2147483648:-2147483648"_s, QTime(12, 0), 0, false, false, 0},
    });
}

void ActionOddTimesTest::ATimeThatIsNone()
{
    const auto& [start, now, tolerance_s, early, ready, delay_s] =
        Rows<QString, QTime, unsigned int, bool, bool, int>::Current();
    Action action(ActionLine{.start = start}.Text());
    auto* const task = new FakeTask(TASK_VOLUME);
    task->m_tolerance_s = tolerance_s;
    action.m_task.reset(task);
    Time().SetLocal(now);
    QCOMPARE(action.IsEarly(), early);
    QCOMPARE(action.IsReady(), ready);
    QCOMPARE(action.IsLost(), false);
    QCOMPARE(action.m_delay, delay_s);
    LogRecorder::Clear();
}

void ActionOddTimesTest::MidnightIsNeverEarly_data()
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

void ActionOddTimesTest::MidnightIsNeverEarly()
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

void ActionOddTimesTest::APlaylistOfAnEarlierDayIsTolerated_data()
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

void ActionOddTimesTest::APlaylistOfAnEarlierDayIsTolerated()
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

OZNA_CASE(ActionOddTimes, ActionOddTimesTest)
#include "tst_ActionOddTimes.moc"
