#include "Rows.h"
#include "Suite.h"
#include "control/QuietMoment.h"

#include <QTest>

using namespace Qt::StringLiterals;

// When a schedule can be replaced unheard.
class tst_QuietMoment final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void IsFreeOfStartsAndOfWhatPlays_data();
    void IsFreeOfStartsAndOfWhatPlays();
    void WhatComesOnlyWithTheNewOneCutsNothing();
    void WhatASeriesOfPhotosAsksForIsNotDisturbed();
    void AMessageThatIsAskedForComesYet();
    void AMessageIsTakenToPlayForAMinute();
};

namespace
{

constexpr qint64 NOW_MS = 1'000'000;
constexpr qint64 UNTIL_MS = NOW_MS + 3'600'000;
constexpr int NO_END = -1; // also: no moment

// Moments in seconds from now.
struct Span
{
    int begin_s;
    int end_s; // NO_END: it only starts
};
using Spans = std::vector<Span>;

constexpr int OPEN = 100'000; // plays without an end

std::vector<Event> EventsOf(const Spans& spans)
{
    std::vector<Event> events;
    for (const Span& span : spans)
    {
        Event event;
        event.moment_ms = event.due_ms = event.begin_ms = NOW_MS + span.begin_s * 1000;
        event.plays = span.end_s != NO_END;
        event.end_ms = span.end_s == OPEN ? Event::OPEN : NOW_MS + span.end_s * 1000;
        event.lineNumber = static_cast<int>(events.size()) + 1;
        events.push_back(event);
    }
    return events;
}

} // namespace

void tst_QuietMoment::IsFreeOfStartsAndOfWhatPlays_data()
{
    // quiet_s: from now; NO_END: there is no such moment. line: of the first reason; 0: none
    Rows<Spans, Spans, int, int>::Add({
        {"nothing comes", {}, {}, 0, 0},
        {"a start in 16 s", {{16, NO_END}}, {}, 0, 0},
        {"a start in 15 s", {{15, NO_END}}, {}, 30, 1},
        {"a start in 1 s", {{1, NO_END}}, {}, 16, 1},
        {"a start 14 s ago", {{-14, NO_END}}, {}, 1, 1},
        {"a start 15 s ago", {{-15, NO_END}}, {}, 0, 0},
        {"a start of the new one", {}, {{10, NO_END}}, 25, 1},
        {"one start after another", {{10, NO_END}, {30, NO_END}, {60, NO_END}, {91, NO_END}}, {}, 75, 1},
        {"it plays", {{-600, 300}}, {}, 300, 1},
        {"it plays, and something starts at its end", {{-600, 300}, {310, NO_END}}, {}, 325, 1},
        {"it has ended", {{-600, 0}}, {}, 0, 0},
        {"it plays soon", {{16, 300}}, {}, 0, 0},
        {"it plays without an end", {{-600, OPEN}}, {}, NO_END, 1},
        {"it plays for too long", {{-600, 3600}}, {}, NO_END, 1},
    });
}

void tst_QuietMoment::IsFreeOfStartsAndOfWhatPlays()
{
    const auto& [running, coming, quiet_s, line] = Rows<Spans, Spans, int, int>::Current();
    const QuietMoment::Result result = QuietMoment::After(NOW_MS, UNTIL_MS, EventsOf(running), EventsOf(coming));
    QCOMPARE(result.moment_ms.has_value(), quiet_s != NO_END);
    if (result.moment_ms)
        QCOMPARE((*result.moment_ms - NOW_MS) / 1000, quiet_s);
    QCOMPARE(result.first ? result.first->event.lineNumber : 0, line);
}

void tst_QuietMoment::WhatComesOnlyWithTheNewOneCutsNothing()
{
    const QuietMoment::Result result = QuietMoment::After(NOW_MS, UNTIL_MS, {}, EventsOf({{-600, 300}}));
    QVERIFY(result.moment_ms == NOW_MS);
}

namespace
{

// In seconds from now; NO_END: there is none.
qint64 QuietAfter_s(const Event& event)
{
    const std::optional<qint64> moment_ms = QuietMoment::After(NOW_MS, UNTIL_MS, {event}, {}).moment_ms;
    return moment_ms ? (*moment_ms - NOW_MS) / 1000 : NO_END;
}

} // namespace

void tst_QuietMoment::WhatASeriesOfPhotosAsksForIsNotDisturbed()
{
    Event event = EventsOf({{5, NO_END}}).front();
    event.kind = EventKind::FOLLOWUP;
    QCOMPARE(QuietAfter_s(event), 20);
    event.kind = EventKind::MISSED;
    QCOMPARE(QuietAfter_s(event), 0);
}

void tst_QuietMoment::AMessageThatIsAskedForComesYet()
{
    Event event = EventsOf({{-1, NO_END}}).front();
    event.due_ms = NOW_MS + 7000;
    QCOMPARE(QuietAfter_s(event), 22);
}

void tst_QuietMoment::AMessageIsTakenToPlayForAMinute()
{
    Event event = EventsOf({{-20, -10}}).front();
    QCOMPARE(QuietAfter_s(event), 0);
    event.type = TASK_PLAY_MESSAGE;
    QCOMPARE(QuietAfter_s(event), 40);
    event.end_ms = NOW_MS + 50000;
    QCOMPARE(QuietAfter_s(event), 50);
}

OZNA_CASE(QuietMoment, tst_QuietMoment)
#include "tst_QuietMoment.moc"
