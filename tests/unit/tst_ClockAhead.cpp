#include "Clock.h"
#include "Suite.h"

#include <QTest>

#include <limits>

#include <sys/syscall.h>
#include <unistd.h>

// The system clock itself, no virtual one, thirty years ahead of the true time: past what 32 bits hold. The program
// runs with the library preloaded that moves the clock; CMakeLists.txt says by how much.
class ClockAheadTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void TheSystemClockCarriesPast2038();
    void DatesFollowIt();
};

namespace
{

constexpr std::int64_t AHEAD_S = 946'728'000;

// What the kernel says, which no library moves.
std::int64_t TrueTime()
{
    std::timespec now{};
#ifdef SYS_clock_gettime64
    const long status = ::syscall(SYS_clock_gettime64, CLOCK_REALTIME, &now);
#else
    const long status = ::syscall(SYS_clock_gettime, CLOCK_REALTIME, &now);
#endif
    return status == 0 ? std::int64_t{now.tv_sec} : -1;
}

QDate DateAt(std::int64_t time_s)
{
    return QDate(1970, 1, 1).addDays(time_s / 86400);
}

} // namespace

void ClockAheadTest::TheSystemClockCarriesPast2038()
{
    const std::int64_t before = TrueTime() + AHEAD_S;
    const std::int64_t now = Clock::Now();
    const std::int64_t after = TrueTime() + AHEAD_S;
    QVERIFY(before > std::numeric_limits<std::int32_t>::max());
    QVERIFY2(now >= before && now <= after, qPrintable(QString::number(now)));
}

void ClockAheadTest::DatesFollowIt()
{
    // A day may end between the readings.
    const QDate before = DateAt(TrueTime() + AHEAD_S);
    const QDate today = Clock::UtcToday();
    QVERIFY2(today >= before && today <= DateAt(TrueTime() + AHEAD_S), qPrintable(today.toString(Qt::ISODate)));
    QVERIFY(qAbs(today.daysTo(Clock::LocalToday())) <= 1);
    QVERIFY(Clock::TimeOfDay().isValid());
}

OZNA_CASE(ClockAhead, ClockAheadTest)
#include "tst_ClockAhead.moc"
