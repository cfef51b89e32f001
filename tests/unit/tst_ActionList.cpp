#include "Action.h"
#include "ActionList.h"
#include "Suite.h"
#include "UnitTest.h"

#include <limits>

// Two lists between which actions move, as those of the scheduler.
class ActionListTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void PlacesGrowTowardsTheEnd();
    void AnActionKnowsWhetherItIsWatched();
    void PlacesBeginAnewWhenTheyRunOut();

private:
    void Begin() override;
    void Append();

    // Of the far list, in its order.
    [[nodiscard]] QList<quint32> Places() const;

    ActionList m_far;
    ActionList m_early{true};
};

void ActionListTest::Begin()
{
    m_far.Clear();
    m_early.Clear();
}

void ActionListTest::Append()
{
    m_far.Append(std::make_unique<Action>(QStringLiteral("1111111|12:00:00|*|*|*|||StopMessage")));
}

QList<quint32> ActionListTest::Places() const
{
    QList<quint32> places;
    for (const auto& action : m_far)
        places.append(action->m_place);
    return places;
}

void ActionListTest::PlacesGrowTowardsTheEnd()
{
    for (int i = 0; i < 3; ++i)
        Append();
    QCOMPARE(Places(), (QList<quint32>{0, 1, 2}));
    const auto first = m_far.begin();
    m_far.MoveTo(m_early, {first});
    QCOMPARE(Places(), (QList<quint32>{1, 2}));
    m_early.MoveTo(m_far, {first});
    QCOMPARE(Places(), (QList<quint32>{1, 2, 3}));
    QVERIFY(*first == *std::prev(m_far.end()));
}

void ActionListTest::AnActionKnowsWhetherItIsWatched()
{
    Append();
    const auto entry = m_far.begin();
    QVERIFY(!(*entry)->m_isWatched);
    m_far.MoveTo(m_early, {entry});
    QVERIFY((*entry)->m_isWatched);
    m_early.MoveTo(m_far, {entry});
    QVERIFY(!(*entry)->m_isWatched);
}

void ActionListTest::PlacesBeginAnewWhenTheyRunOut()
{
    Append();
    Append();
    (*std::prev(m_far.end()))->m_place = std::numeric_limits<quint32>::max() - 2;
    Append();
    QCOMPARE(Places().last(), std::numeric_limits<quint32>::max() - 1);
    Append();
    QCOMPARE(Places(), (QList<quint32>{0, 1, 2, 3}));
}

OZNA_CASE(ActionList, ActionListTest)
#include "tst_ActionList.moc"
