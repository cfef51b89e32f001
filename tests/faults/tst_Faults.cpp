#include "FaultLane.h"
#include "Suite.h"

#include <QTest>

#include <memory>
#include <vector>

// Everything that can go wrong with every request that the daemon sends. Each row is a group of requests, registered as
// a test of its own.
class Faults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void AFaultCostsItsTimeOutAndARecord_data();
    void AFaultCostsItsTimeOutAndARecord();

private:
    using Lanes = std::vector<std::unique_ptr<FaultLane>>;

    static void RunDay(const Lanes& lanes, const Fault* fault, const QDate& day);
    [[nodiscard]] static QByteArray Complaints(const Lanes& lanes);
};

void Faults::AFaultCostsItsTimeOutAndARecord_data()
{
    QTest::addColumn<QString>("group");
    for (const char* group : {"play", "stop", "delete", "set", "photo", "slow"})
        QTest::newRow(group) << QString::fromLatin1(group);
}

void Faults::RunDay(const Lanes& lanes, const Fault* fault, const QDate& day)
{
    for (const auto& lane : lanes)
        lane->Prepare(fault, day);
    for (const auto step : {&FaultLane::Begin, &FaultLane::Provoke, &FaultLane::Finish, &FaultLane::Settle})
    {
        for (const auto& lane : lanes)
            (*lane.*step)();
        // What has gone wrong once makes all that follows wait in vain.
        QVERIFY2(Complaints(lanes).isEmpty(), Complaints(lanes).constData());
    }
}

QByteArray Faults::Complaints(const Lanes& lanes)
{
    QStringList complaints;
    for (const auto& lane : lanes)
        complaints += lane->Complaints();
    return complaints.join(u'\n').toUtf8();
}

void Faults::AFaultCostsItsTimeOutAndARecord()
{
    QFETCH(QString, group);
    FaultReport::WriteLegend();
    Lanes lanes;
    std::vector<int> numbers;
    int number = 0;
    for (const Request& request : Request::First())
    {
        ++number;
        if (group != QLatin1String(request.Row().group))
            continue;
        lanes.push_back(std::make_unique<FaultLane>(request));
        numbers.push_back(number);
    }
    QVERIFY(!lanes.empty());
    for (const auto& lane : lanes)
        lane->Start();
    QDate day(2024, 1, 15);
    for (const Fault& fault : FAULTS)
    {
        RunDay(lanes, &fault, day);
        if (QTest::currentTestFailed())
            return;
        day = day.addDays(1);
    }
    // The last fault leaves nothing behind either, and what was missed is made up for.
    RunDay(lanes, nullptr, day);
    for (size_t i = 0; i < lanes.size(); ++i)
        lanes[i]->End(numbers[i]);
    QVERIFY2(Complaints(lanes).isEmpty(), Complaints(lanes).constData());
}

OZNA_CASE(Faults, Faults)
#include "tst_Faults.moc"
