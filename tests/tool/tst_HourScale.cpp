#include "Suite.h"
#include "html/HourScale.h"

#include <QTest>

#include <map>

namespace
{

constexpr int HOUR_S = HourScale::HOUR_S;

} // namespace

class HourScaleTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void NoEntryCoversAnother_data();
    void NoEntryCoversAnother();
    void TheSameTimeStandsAtTheSameHeight_data();
    void TheSameTimeStandsAtTheSameHeight();
    void AnHourIsAsHighAsItsBusiestDayNeeds();
};

void HourScaleTest::NoEntryCoversAnother_data()
{
    using Items = HourScale::Items;
    using Places = std::vector<double>;
    QTest::addColumn<Items>("items");
    QTest::addColumn<Places>("places");
    QTest::newRow("none") << Items{} << Places{};
    QTest::newRow("alone") << Items{{HOUR_S, 1}} << Places{1};
    QTest::newRow("alone, in the middle of its hour") << Items{{HOUR_S + 1800, 1}} << Places{1.5};
    QTest::newRow("at the day's last quarter") << Items{{HourScale::DAY_S - 900, 1}} << Places{23.75};
    QTest::newRow("in the same second") << Items{{0, 1}, {0, 1}, {0, 1}} << Places{0, 1, 2};
    QTest::newRow("at the end of an hour") << Items{{2700, 1}, {2700, 1}} << Places{0.75, 1.75};
    QTest::newRow("an hour and the next") << Items{{2700, 1}, {3150, 1}, {3600, 1}} << Places{0.75, 1.75, 2.75};
    QTest::newRow("apart") << Items{{0, 1}, {1800, 1}} << Places{0, 1};
    QTest::newRow("high ones") << Items{{0, 2}, {1, 1}, {1800, 2}} << Places{0, 2, 3};
    QTest::newRow("out of the day") << Items{{-1, 1}, {90000, 1}} << Places{0, 23 + 3599.0 / HOUR_S};
}

void HourScaleTest::NoEntryCoversAnother()
{
    QFETCH(const HourScale::Items, items);
    const HourScale scale({items});
    QTEST(scale.Places(items), "places");
}

void HourScaleTest::TheSameTimeStandsAtTheSameHeight_data()
{
    using Days = std::vector<HourScale::Items>;
    QTest::addColumn<Days>("days");
    constexpr int MORNING_S = 8 * HOUR_S;
    constexpr int BREAK_S = MORNING_S + 2700;
    QTest::newRow("one day has more before it")
        << Days{{{MORNING_S, 1}, {MORNING_S + 60, 2}, {MORNING_S + 120, 1}, {BREAK_S, 1}}, {{BREAK_S, 1}}};
    QTest::newRow("one day has more after it")
        << Days{{{BREAK_S, 1}, {BREAK_S + 1, 1}, {BREAK_S + 2, 1}, {BREAK_S + 3, 2}}, {{BREAK_S, 1}}};
    QTest::newRow("each day has others") << Days{{{MORNING_S, 1}, {MORNING_S + 1, 1}, {BREAK_S, 1}},
                                                 {{MORNING_S + 2, 2}, {BREAK_S, 1}, {BREAK_S + 9, 1}},
                                                 {{BREAK_S, 1}, {BREAK_S, 1}, {BREAK_S + 899, 1}}};
    QTest::newRow("the busy hour before")
        << Days{{{MORNING_S - 1, 3}, {MORNING_S - 1, 3}, {MORNING_S, 1}}, {{MORNING_S, 1}, {BREAK_S, 1}}};
}

void HourScaleTest::TheSameTimeStandsAtTheSameHeight()
{
    QFETCH(const std::vector<HourScale::Items>, days);
    const HourScale scale(days);
    std::map<int, double> heights;
    for (const HourScale::Items& items : days)
    {
        const std::vector<double> places = scale.Places(items);
        double free = 0;
        for (size_t i = 0; i < items.size(); ++i)
        {
            const int time_s = items[i].time_s;
            QVERIFY2(places[i] >= free, "it covers another");
            free = places[i] + items[i].rows;
            QVERIFY2(free <= scale.Place((time_s / HOUR_S + 1) * HOUR_S), "it stands in the next hour as well");
            if (i == 0 || items[i - 1].time_s != time_s)
                QCOMPARE(places[i], heights.emplace(time_s, places[i]).first->second);
        }
    }
    double last = -1;
    for (const auto& [time_s, height] : heights)
    {
        QVERIFY2(height > last, "a later time stands no lower");
        QCOMPARE(scale.Place(time_s), height);
        last = height;
    }
}

void HourScaleTest::AnHourIsAsHighAsItsBusiestDayNeeds()
{
    const HourScale scale({{{0, 1}, {1, 2}, {3, 1}}, {{5, 1}, {HOUR_S, 1}, {HOUR_S + 1, 1}}});
    const double second = 1.0 / HOUR_S;
    QCOMPARE(scale.Place(0), 0.0);
    QCOMPARE(scale.Place(1), 1.0);
    QCOMPARE(scale.Place(2), 2.0); // half way to the next
    QCOMPARE(scale.Place(3), 3.0);
    QCOMPARE(scale.Place(5), 3 + 2 * second);
    QCOMPARE(scale.Place(HOUR_S), 4 + 2 * second);
    QCOMPARE(scale.Place(HOUR_S + 1), scale.Place(HOUR_S) + 1);
    QCOMPARE(scale.Rows(), scale.Place(HourScale::DAY_S));
}

OZNA_CASE(HourScale, HourScaleTest)
#include "tst_HourScale.moc"
