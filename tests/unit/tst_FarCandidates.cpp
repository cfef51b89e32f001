#include "AskingAllTest.h"
#include "Suite.h"
#include "TimeZone.h"

// The far pass asks few actions, and finds what it would find if it asked all: the same, in the same order, with the
// same records. The tasks are fakes, whose tolerance changes after the load as well.
class FarCandidatesTest final : public AskingAllTest
{
    Q_OBJECT
private Q_SLOTS:
    void APassFindsWhatAskingAllFinds_data();
    void APassFindsWhatAskingAllFinds();
    void ATimeBehindAChangeOfTheClocksIsFound();
};

void FarCandidatesTest::APassFindsWhatAskingAllFinds_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QList<QDateTime>>("changes");
    const auto row = [](const char* zone, const QList<QDateTime>& changes) {
        QTest::newRow(zone) << QByteArray(zone) << changes;
    };
    const auto at = [](int year, int month, int day, int hour, int minute) {
        return QDateTime(QDate(year, month, day), QTime(hour, minute), Qt::UTC);
    };
    row("UTC", {});
    row("Europe/Rome", {at(2024, 3, 31, 1, 0), at(2024, 10, 27, 1, 0)});
    row("Australia/Lord_Howe", {at(2024, 4, 6, 15, 0), at(2024, 10, 5, 15, 30)});
    row("America/Los_Angeles", {at(2024, 3, 10, 10, 0), at(2024, 11, 3, 9, 0)});
    row("Asia/Kathmandu", {});
    // Put forward with daylight saving as it was, and a day that was left out. Where such a clock is put back, a time
    // that comes twice is one or the other to the C library, by what it was asked before.
    row("Asia/Pyongyang", {at(2018, 5, 4, 15, 0)});
    row("Africa/Sao_Tome", {at(2018, 1, 1, 1, 0)});
    row("America/Caracas", {at(2016, 5, 1, 7, 0)});
    row("Pacific/Apia", {at(2011, 12, 30, 10, 0)});
}

void FarCandidatesTest::APassFindsWhatAskingAllFinds()
{
    QFETCH(QByteArray, zone);
    QFETCH(QList<QDateTime>, changes);
    const TimeZone there(zone);
    const QDateTime noon(QDate(2024, 5, 15), QTime(12, 0), Qt::UTC);
    CompareAround(changes.isEmpty() ? QList{noon, noon.addSecs(43200)} : changes, 30, 1);
    QVERIFY(Found().early > 500);
    QVERIFY(Found().forced > 10);
    QVERIFY(Found().late > 100);
    QVERIFY(Found().skipped > 10);
    QCOMPARE(Found().unsteady > 100, !changes.isEmpty());
}

// Ten seconds ahead, while the wall clock shows more than an hour less.
void FarCandidatesTest::ATimeBehindAChangeOfTheClocksIsFound()
{
    const TimeZone there("Africa/Sao_Tome");
    Time().SetUtc(QDate(2018, 1, 1), QTime(0, 59, 55));
    StartWith({"1111111|02:00:05|*|*|*|||Volume|1"});
    CheckFar();
    QCOMPARE(EarlyList(), QStringList(QStringLiteral("Volume 02:00:05")));
}

OZNA_CASE(FarCandidates, FarCandidatesTest)
#include "tst_FarCandidates.moc"
