#include "BusTest.h"
#include "Lines.h"
#include "MuteClient.h"
#include "ProcessMemory.h"
#include "Suite.h"

#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>

#include <algorithm>

using namespace Lines;
using namespace Qt::StringLiterals;

// Two hundred clients at once, and one that never reads its replies: every call is answered, actions come at their
// second, and no memory is kept. With OZNA_LONG_TESTS the crowd stays for a minute.
class Crowd : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void ActionsComeInTimeWhileACrowdCalls();
    void AClientThatNeverReadsHarmsNobody();

private:
    void Ask(int client, const char* method, const QVariantList& arguments = {});
    [[nodiscard]] bool AllAnswered() const { return m_answered + m_failed == m_asked; }
    void AskAllAtOnce();
    [[nodiscard]] qint64 Late_ms(int second, const QDateTime& start);

    QList<QDBusConnection> m_clients;
    int m_asked = 0;
    int m_answered = 0;
    int m_failed = 0;
    qint64 m_slowest_ms = 0;
};

namespace
{

constexpr int CLIENTS = OZNA_CROWD;
constexpr long TOLERATED_KB = 4096;
// A round: a wave of all methods, and from FIRST_S on an action each second. A reload starts the passes anew, and the
// first of them comes three seconds later: the wave may take almost five.
constexpr int ROUND_S = 12;
constexpr int FIRST_S = 8;
constexpr int LAST_S = 10;
constexpr int SHORT_ROUNDS = 1;
constexpr int LONG_ROUNDS = 5;
constexpr qint64 SLOWEST_MS = 10000;
// An action that is no message may come two seconds late before it is missed.
constexpr qint64 LATEST_MS = 2000;

} // namespace

void Crowd::Ask(int client, const char* method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(SchedulerClient::SERVICE, SchedulerClient::PATH,
                                                       SchedulerClient::INTERFACE, QString::fromLatin1(method));
    call.setArguments(arguments);
    ++m_asked;
    QElapsedTimer timer;
    timer.start();
    auto* const watcher = new QDBusPendingCallWatcher(m_clients[client].asyncCall(call), this);
    const bool isConnected = connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, timer, watcher] {
        const QDBusMessage reply = watcher->reply();
        const bool isGood = reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0) == QVariant(0);
        ++(isGood ? m_answered : m_failed);
        m_slowest_ms = std::max(m_slowest_ms, timer.elapsed());
        watcher->deleteLater();
    });
    QVERIFY(isConnected);
}

// The order leaves the daemon enabled, with the first schedule file.
void Crowd::AskAllAtOnce()
{
    for (int client = 0; client < CLIENTS; ++client)
    {
        Ask(client, "SetEnabled", {false});
        Ask(client, "SetScheduleFile", {u"none.csv"_s});
        Ask(client, "SetEnabled", {true});
        Ask(client, "Reload");
        Ask(client, "IsEnabled");
        Ask(client, "SetScheduleFile", {u"schedule.csv"_s});
    }
}

// How late the action of that second was asked for; a large number when it was not.
qint64 Crowd::Late_ms(int second, const QDateTime& start)
{
    const QString call = u"sound.SetMasterVolume d %1"_s.arg(second);
    const qsizetype index = Device().Calls().indexOf(call);
    const qint64 shift_ms = QDateTime::currentDateTimeUtc().msecsTo(Time().Now());
    return index < 0 ? LATEST_MS * 100
                     : Device().CallTimes().at(index) + shift_ms - start.addSecs(second).toMSecsSinceEpoch();
}

void Crowd::ActionsComeInTimeWhileACrowdCalls()
{
    const int rounds = IsLong() ? LONG_ROUNDS : SHORT_ROUNDS;
    const QDateTime start = At(MONDAY, {8, 30});
    QByteArray schedule;
    QList<int> seconds;
    for (int round = 0; round < rounds; ++round)
    {
        for (int second = round * ROUND_S + FIRST_S; second <= round * ROUND_S + LAST_S; ++second)
        {
            seconds.append(second);
            schedule += "1111111|" + start.addSecs(second).time().toString(u"HH:mm:ss"_s).toLatin1() +
                        "|*|*|*|||Volume|" + QByteArray::number(second) + '\n';
        }
    }
    WriteSchedule(schedule);
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    for (int client = 0; client < CLIENTS; ++client)
        m_clients.append(Bus().Connect());
    QVERIFY(StartDaemon());
    const long before_kB = MemoryKilobytes(DaemonPid(), "VmRSS");

    Time().Set(start);
    for (int round = 0; round < rounds; ++round)
    {
        QVERIFY(WaitUntil([&] { return Time().Now() >= start.addSecs(round * ROUND_S); }));
        AskAllAtOnce();
        // From then on what each may ask at any time without a new start of the passes.
        while (Time().Now() < start.addSecs((round + 1) * ROUND_S))
        {
            QVERIFY(WaitUntil([&] { return AllAnswered(); }));
            for (int client = 0; client < CLIENTS; ++client)
                Ask(client, client % 2 == 0 ? "IsEnabled" : "SetEnabled",
                    client % 2 == 0 ? QVariantList() : QVariantList{true});
        }
    }
    QVERIFY(WaitUntil([&] { return AllAnswered(); }));

    qint64 latest_ms = 0;
    for (const int second : seconds)
    {
        const qint64 late_ms = Late_ms(second, start);
        QVERIFY2(late_ms >= 0 && late_ms <= LATEST_MS, qPrintable(u"%1: %2"_s.arg(second).arg(late_ms)));
        latest_ms = std::max(latest_ms, late_ms);
    }
    QCOMPARE(Device().Calls().size(), seconds.size());
    m_clients.clear();
    long after_kB = 0;
    const bool isFreed = WaitUntil([&] {
        // What the library's own thread lets go after a reload is given back by the next.
        static_cast<void>(Client().Call("Reload"));
        after_kB = MemoryKilobytes(DaemonPid(), "VmRSS");
        return IsSanitized() || after_kB <= before_kB + TOLERATED_KB;
    });
    qInfo("%d calls answered, %d failed, the slowest after %lld ms; %lld actions, the latest %lld ms late; resident "
          "before: %ld kB, after: %ld kB, at most: %ld kB",
          m_answered, m_failed, m_slowest_ms, static_cast<qint64>(seconds.size()), latest_ms, before_kB, after_kB,
          MemoryKilobytes(DaemonPid(), "VmHWM"));
    QCOMPARE(m_failed, 0);
    QVERIFY(m_slowest_ms < SLOWEST_MS);
    QVERIFY(isFreed);
    QCOMPARE(StopDaemon(), 0);
}

void Crowd::AClientThatNeverReadsHarmsNobody()
{
    // Far more than its socket holds.
    constexpr int CALLS = 60;
    constexpr int LENGTH = 1'000'000;
    WriteSchedule("1111111|08:30:04|*|*|*|||Volume|10\n", u"due.csv"_s);
    QVERIFY(StartDaemon());
    const long before_kB = MemoryKilobytes(DaemonPid(), "VmRSS");
    QCOMPARE(Client().Call("SetScheduleFile", {QString(LENGTH, u'x')}), u"0"_s);
    COMPARE_LINES(Daemon().Take(2), TOO_LONG);

    MuteClient mute(Bus().Address().toLatin1());
    for (int i = 0; i < CALLS; ++i)
        QVERIFY(mute.Call(SchedulerClient::SERVICE.toLatin1(), SchedulerClient::PATH.toLatin1(),
                          SchedulerClient::INTERFACE.toLatin1(), "IsEnabled"));
    // Others are answered, and what is due is asked for.
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(Client().Call("SetScheduleFile", {u"due.csv"_s}), u"0"_s);
    const qint64 answered_ms = timer.elapsed();
    Time().Set(MONDAY, {8, 30});
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {u"sound.SetMasterVolume d 10"_s});
    long after_kB = 0;
    const bool isFreed = WaitUntil([&] {
        // What the library's own thread lets go after a reload is given back by the next.
        static_cast<void>(Client().Call("Reload"));
        after_kB = MemoryKilobytes(DaemonPid(), "VmRSS");
        return IsSanitized() || after_kB <= before_kB + TOLERATED_KB;
    });
    qInfo("another client answered after %lld ms; resident before: %ld kB, after: %ld kB, at most: %ld kB", answered_ms,
          before_kB, after_kB, MemoryKilobytes(DaemonPid(), "VmHWM"));
    QVERIFY(isFreed);
    QVERIFY(answered_ms < SLOWEST_MS);
    QCOMPARE(StopDaemon(), 0);
}

OZNA_CASE(Crowd, Crowd)
#include "tst_Crowd.moc"
