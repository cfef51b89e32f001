#include "HeardTest.h"
#include "Rows.h"
#include "Suite.h"
#include "ear/Gong.h"

using namespace Qt::StringLiterals;

// The clock on the wall is set between a request and its moment: what it shows then counts.
class HeardClock : public HeardTest
{
    Q_OBJECT
private Q_SLOTS:
    void AStepBeforeTheMoment_data();
    void AStepBeforeTheMoment();
    void AStepBeyondTheMomentIsAtOnce();
};

namespace
{

const QDate DAY{2024, 1, 15};

} // namespace

void HeardClock::AStepBeforeTheMoment_data()
{
    // From when to when the clock is set, with 08:30:00 the moment.
    Rows<QTime, QTime>::Add({{"forward by seconds", QTime(8, 29, 49), QTime(8, 29, 56, 300)},
                             {"forward by minutes", QTime(8, 20), QTime(8, 29, 56, 700)},
                             {"back", QTime(8, 29, 55), QTime(8, 29, 53, 400)},
                             {"within the last second", QTime(8, 29, 52), QTime(8, 29, 59, 400)}});
}

void HeardClock::AStepBeforeTheMoment()
{
    const auto& [before, after] = Rows<QTime, QTime>::Current();
    FakeTime time;
    time.Set(DAY, before);
    time.Apply(Player().Environment());
    WriteSound(u"gong.wav"_s, Gong::Samples(500));
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, u"08:30:00"_s), 0);
    Pause(700);
    time.Set(DAY, after);
    QVERIFY(WaitForSounds(1));
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted gong.wav"_s));
    // The ear's clock is the machine's.
    const qint64 shift_ms = QDateTime::currentDateTimeUtc().msecsTo(time.Now());
    const QDateTime due(DAY, QTime(8, 30), Qt::UTC);
    const double error_ms = Hearing().Sounds()[0].at_ms - static_cast<double>(due.toMSecsSinceEpoch() - shift_ms);
    qInfo("%.2f ms", error_ms);
    // To the millisecond at which the clock was set.
    QVERIFY2(qAbs(error_ms) < EXACT_MS + 2, qPrintable(QString::number(error_ms)));
    QCOMPARE(Hearing().Sounds().size(), size_t{1});
}

void HeardClock::AStepBeyondTheMomentIsAtOnce()
{
    FakeTime time;
    time.Set(DAY, {8, 29, 52});
    time.Apply(Player().Environment());
    WriteSound(u"gong.wav"_s, Gong::Samples(500));
    QVERIFY(StartPlayer());
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, u"08:30:00"_s), 0);
    Pause(700);
    time.Set(DAY, {8, 31});
    const auto set_ms = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    QVERIFY(WaitForSounds(1));
    const double delay_ms = Hearing().Sounds()[0].at_ms - set_ms;
    QVERIFY2(delay_ms > 0 && delay_ms < 2000, qPrintable(QString::number(delay_ms)));
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted gong.wav"_s));
}

OZNA_CASE(HeardClock, HeardClock)
#include "tst_HeardClock.moc"
