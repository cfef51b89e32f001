#include "Suite.h"
#include "ear/Arrivals.h"

#include <QTest>

// Moments of frames, told from blocks that come late.
class ArrivalsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void NothingHasComeYet();
    void ABlockThatComesLateMovesNothing();
    void ASlowClockIsFollowed();
    void AnotherOutputIsAnotherLine();
};

namespace
{

constexpr qint64 BLOCK = 480; // 10 ms
constexpr qint64 BLOCK_US = 10'000;
constexpr qint64 BEGIN_US = 1'700'000'000'000'000;

} // namespace

void ArrivalsTest::NothingHasComeYet()
{
    Arrivals arrivals;
    QVERIFY(!arrivals.LineAt_us(0));
    arrivals.Add(1000, BEGIN_US);
    QVERIFY(!arrivals.LineAt_us(999));
    QCOMPARE(arrivals.LineAt_us(1048), BEGIN_US + 1000);
}

void ArrivalsTest::ABlockThatComesLateMovesNothing()
{
    Arrivals arrivals;
    // Every block is late but two; one of them comes after the block that is asked for.
    for (qint64 i = 0; i < 100; ++i)
        arrivals.Add(i * BLOCK, BEGIN_US + i * BLOCK_US + (i == 3 || i == 70 ? 0 : 2000 + 100 * (i % 7)));
    QCOMPARE(arrivals.LineAt_us(50 * BLOCK + 48), BEGIN_US + 50 * BLOCK_US + 1000);
    QCOMPARE(arrivals.ArrivalAt_us(50 * BLOCK + 48), BEGIN_US + 50 * BLOCK_US + 1000 + 2100);
}

void ArrivalsTest::ASlowClockIsFollowed()
{
    Arrivals arrivals;
    // 0.1 % slow: a minute is 60 ms longer. Only what is near counts.
    for (qint64 i = 0; i < 6000; ++i)
        arrivals.Add(i * BLOCK, BEGIN_US + i * 10'010);
    const qint64 error_us = *arrivals.LineAt_us(5000 * BLOCK) - (BEGIN_US + 5000 * 10'010);
    QVERIFY2(std::abs(error_us) <= 3010, qPrintable(QString::number(error_us)));
}

void ArrivalsTest::AnotherOutputIsAnotherLine()
{
    Arrivals arrivals;
    arrivals.Add(0, BEGIN_US);
    arrivals.Break();
    arrivals.Add(BLOCK, BEGIN_US + 60'000'000);
    QCOMPARE(arrivals.LineAt_us(BLOCK), BEGIN_US + 60'000'000);
    QCOMPARE(arrivals.LineAt_us(0), BEGIN_US);
}

OZNA_CASE(Arrivals, ArrivalsTest)
#include "tst_Arrivals.moc"
