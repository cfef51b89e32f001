#include "FakeTask.h"
#include "SchedulerAccess.h"
#include "SchedulerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// The light and radio state that is in force when the schedule starts.
class FindReadyTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void WhatShouldBeInForceIsForced_data();
    void WhatShouldBeInForceIsForced();
};

void FindReadyTest::WhatShouldBeInForceIsForced_data()
{
    QTest::addColumn<QTime>("now");
    QTest::addColumn<QStringList>("actions"); // "start task", one a line of the file
    QTest::addColumn<QList<int>>("forced");   // which of them
    const auto row = [](const char* name, const QTime& now, const QStringList& actions, const QList<int>& forced) {
        QTest::newRow(name) << now << actions << forced;
    };
    const QTime ten(10, 0);
    const QStringList lights{u"08:00:00 Light"_s, u"09:00:00 Light"_s};
    row("of two lights the later one", ten, lights, {1});
    row("of two lights the later one, whatever the order", ten, {lights[1], lights[0]}, {0});
    row("of two lights the one that has begun", QTime(8, 30), lights, {0});
    row("no light has begun", QTime(7, 0), lights, {});
    row("a light that begins now", QTime(8, 0), lights, {0});
    row("a light that begins in a millisecond", QTime(7, 59, 59, 999), lights, {});
    row("of equal lights the first", ten, {u"08:00:00 Light"_s, u"09:00:00 Light"_s, u"09:00:00 Light"_s}, {1});
    row("of three lights the latest in the middle", ten,
        {u"08:00:00 Light"_s, u"09:30:00 Light"_s, u"09:00:00 Light"_s}, {1});
    row("a light at midnight", QTime(0, 0), {u"00:00:00 Light"_s}, {0});
    row("a light of yesterday's evening is not looked for", ten, {u"22:00:00 Light"_s}, {});
    row("a time that is none counts as the earliest", ten, {u"25:00:00 Light"_s}, {0});
    row("any time is later than one that is none", ten, {u"25:00:00 Light"_s, u"00:00:00 Light"_s}, {1});

    const QStringList radio{u"08:00:00 PlayRadioFm"_s, u"12:00:00 StopRadioFm"_s};
    row("the radio has been stopped", QTime(13, 0), radio, {});
    row("the radio plays", ten, radio, {0});
    row("the radio stops now", QTime(12, 0), radio, {});
    row("the radio stops in a millisecond", QTime(11, 59, 59, 999), radio, {0});
    row("the radio has not begun", QTime(7, 59), radio, {});
    row("the radio begins now", QTime(8, 0), radio, {0});
    row("both at once is stopped", ten, {u"08:00:00 PlayRadioFm"_s, u"08:00:00 StopRadioFm"_s}, {});
    row("both at once is stopped, whatever the order", ten, {u"08:00:00 StopRadioFm"_s, u"08:00:00 PlayRadioFm"_s}, {});
    row("stopped, then begun", ten, {u"08:00:00 StopRadioFm"_s, u"09:00:00 PlayRadioFm"_s}, {1});
    row("begun, stopped, begun again", ten,
        {u"07:00:00 PlayRadioFm"_s, u"08:00:00 StopRadioFm"_s, u"09:00:00 PlayRadioFm"_s}, {2});
    row("begun, begun again, stopped", ten,
        {u"07:00:00 PlayRadioFm"_s, u"08:00:00 PlayRadioFm"_s, u"09:00:00 StopRadioFm"_s}, {});
    row("of equal radios the first", ten, {u"08:00:00 PlayRadioFm"_s, u"08:00:00 PlayRadioFm"_s}, {0});
    row("a stop alone", ten, {u"08:00:00 StopRadioFm"_s}, {});
    row("light and radio", ten, {u"08:00:00 PlayRadioFm"_s, u"09:00:00 Light"_s}, {0, 1});
    row("other tasks are not restored", ten,
        {u"09:00:00 Volume"_s, u"09:00:00 PlayMessage"_s, u"09:00:00 PlayPlaylist"_s, u"09:00:00 StopMessage"_s,
         u"09:00:00 StopPlaylist"_s},
        {});
    row("an empty schedule", ten, {}, {});
}

void FindReadyTest::WhatShouldBeInForceIsForced()
{
    QFETCH(QTime, now);
    QFETCH(QStringList, actions);
    QFETCH(QList<int>, forced);
    // The days on which an action is due are not looked at.
    for (const char* days : {"1111111", "0000000"})
    {
        QByteArray lines;
        for (const QString& action : actions)
            lines += QByteArray(days) + '|' + action.left(8).toUtf8() + "|*|*|*|20200101|20200101|" +
                     action.mid(9).toUtf8() + "|1\n";
        Data().WriteSchedule(lines);
        Time().SetLocal(now);
        Create();
        Engine().Start();

        LogLines expected{"4 [Scheduler.cpp] Finding ready actions..."};
        const auto has = [&](const QString& task) {
            return std::ranges::any_of(forced, [&](int index) { return actions[index].endsWith(task); });
        };
        if (has(u"Light"_s))
            expected.append("4 [Scheduler.cpp] Found Light action to start");
        if (has(u"PlayRadioFm"_s))
            expected.append("4 [Scheduler.cpp] Found RadioFm action to start");
        QStringList found = LogRecorder::Messages(4);
        QCOMPARE(found.takeLast(), u"Schedule started"_s);
        QCOMPARE(found.mid(3).size(), expected.size());
        for (qsizetype i = 0; i < expected.size(); ++i)
            QCOMPARE(u"4 [Scheduler.cpp] "_s + found[3 + i], expected[i].shown);

        QList<int> isForced;
        int index = 0;
        for (const auto& action : SchedulerAccess::FarActions(Engine()))
        {
            if (action->m_forced)
                isForced.append(index);
            ++index;
        }
        QCOMPARE(isForced, forced);
        QCOMPARE(index, actions.size());
        LogRecorder::Clear();
    }
}

OZNA_CASE(FindReady, FindReadyTest)
#include "tst_FindReady.moc"
