#include "Suite.h"
#include "engine/EventQueue.h"

#include <QTest>

#include <utility>

namespace
{

Event At(qint64 moment_ms, int line)
{
    Event event;
    event.moment_ms = moment_ms;
    event.lineNumber = line;
    return event;
}

bool NoneIsHeld(size_t)
{
    return false;
}

} // namespace

// In which order a rehearsal's events are handed over, and when.
class EventQueueTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void WhatComesBeforeTheMomentIsTaken();
    void WhatIsHeldHoldsUpWhatFollows();
    void MissedStartsAreTakenAtTheirMoments();
    void AtTheEndAllAreTakenInOrder();

private:
    // The lines of those that were taken since it was asked last.
    QList<int> Taken() { return std::exchange(m_taken, {}); }

    QList<int> m_taken;
    const EventQueue::Take m_take = [this](Event&& event) { m_taken.append(event.lineNumber); };
};

void EventQueueTest::WhatComesBeforeTheMomentIsTaken()
{
    EventQueue queue;
    QCOMPARE(queue.Append(At(1000, 1)), size_t{0});
    QCOMPARE(queue.Append(At(2000, 2)), size_t{1});
    queue.Release(2000, NoneIsHeld, m_take);
    QCOMPARE(Taken(), QList<int>{1});
    QCOMPARE(queue[1].lineNumber, 2);
    QCOMPARE(queue.Append(At(3000, 3)), size_t{2});
    queue.Release(3001, NoneIsHeld, m_take);
    QCOMPARE(Taken(), (QList<int>{2, 3}));
    queue.Release(9000, NoneIsHeld, m_take);
    QCOMPARE(Taken(), QList<int>());
}

void EventQueueTest::WhatIsHeldHoldsUpWhatFollows()
{
    EventQueue queue;
    static_cast<void>(queue.Append(At(1000, 1)));
    static_cast<void>(queue.Append(At(2000, 2)));
    queue.AppendMissed(At(500, 3));
    queue.AppendMissed(At(1500, 4));
    queue.Release(
        9000, [](size_t number) { return number == 0; }, m_take);
    QCOMPARE(Taken(), QList<int>{3});
    queue.Release(
        9000, [](size_t number) { return number == 1; }, m_take);
    QCOMPARE(Taken(), (QList<int>{1, 4}));
    queue.Release(9000, NoneIsHeld, m_take);
    QCOMPARE(Taken(), QList<int>{2});
}

void EventQueueTest::MissedStartsAreTakenAtTheirMoments()
{
    EventQueue queue;
    static_cast<void>(queue.Append(At(1000, 1)));
    static_cast<void>(queue.Append(At(1000, 2)));
    static_cast<void>(queue.Append(At(2000, 3)));
    queue.AppendMissed(At(1000, 4));
    queue.AppendMissed(At(999, 5));
    queue.AppendMissed(At(1000, 6));
    queue.Release(1001, NoneIsHeld, m_take);
    QCOMPARE(Taken(), (QList<int>{5, 1, 2, 4, 6}));
}

// Also where the calendar was stepped back.
void EventQueueTest::AtTheEndAllAreTakenInOrder()
{
    for (const qint64 last_ms : {3000, 1000})
    {
        EventQueue queue;
        static_cast<void>(queue.Append(At(1000, 1)));
        static_cast<void>(queue.Append(At(2000, 2)));
        static_cast<void>(queue.Append(At(last_ms, 3)));
        queue.AppendMissed(At(2000, 4));
        queue.AppendMissed(At(1000, 5));
        queue.Finish(m_take);
        QCOMPARE(Taken(), last_ms == 3000 ? (QList<int>{1, 5, 2, 4, 3}) : (QList<int>{1, 3, 5, 2, 4}));
        QCOMPARE(queue.Append(At(4000, 6)), size_t{3});
    }
}

OZNA_CASE(EventQueue, EventQueueTest)
#include "tst_EventQueue.moc"
