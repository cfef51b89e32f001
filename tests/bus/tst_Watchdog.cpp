#include "BusTest.h"
#include "DatagramSocket.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// What the service manager hears of a daemon that it watches.
class Watchdog : public BusTest
{
    Q_OBJECT
private Q_SLOTS:
    void EachFarPassGivesASign();
    void APeerThatIsSilentForLongIsNoHang();
    void NobodyIsToldWhereNobodyWatches();
    void AManagerThatCannotBeReachedIsAWarning();

private:
    // The daemon will be watched by the manager that is returned.
    [[nodiscard]] std::unique_ptr<DatagramSocket> Watch();
};

namespace
{

const QByteArray SIGN = "WATCHDOG=1";

} // namespace

std::unique_ptr<DatagramSocket> Watchdog::Watch()
{
    Daemon().Environment().insert(u"NOTIFY_SOCKET"_s, DataPath(u"notify"_s));
    Daemon().Environment().insert(u"WATCHDOG_USEC"_s, u"60000000"_s);
    return std::make_unique<DatagramSocket>(DataPath(u"notify"_s));
}

void Watchdog::EachFarPassGivesASign()
{
    const auto manager = Watch();
    QVERIFY(StartDaemon());
    QVERIFY(WaitForPasses(1));
    QVERIFY(WaitForPasses(1));
    // The last one comes at the end of its pass.
    qsizetype signs = 0;
    QVERIFY(WaitUntil([&] { return (signs += manager->Read().count(SIGN)) >= 2; }));
    QCOMPARE(signs, 2);

    // There are no passes while scheduling is switched off, and the daemon works all the same.
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    static_cast<void>(manager->Read());
    QVERIFY(WaitUntil([&] { return manager->Read() == QByteArrayList{SIGN}; }));

    QCOMPARE(Client().Call("SetEnabled", {true}), u"0"_s);
    QVERIFY(WaitForPasses(1));
    QVERIFY(WaitUntil([&] { return manager->Read().contains(SIGN); }));
}

// Each answer is one step further, also one that does not come: however many follow each other within one pass.
void Watchdog::APeerThatIsSilentForLongIsNoHang()
{
    const auto manager = Watch();
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3,70\n");
    Device().AnswerNever("sound.SetPlayerVolume");
    Device().AnswerNever("sound.PlayFile");
    QVERIFY(StartDaemon());
    QVERIFY(RunDue(1));
    QVERIFY(Device().WaitForCalls(1));
    static_cast<void>(manager->Read());
    // The loop is held from the first request on.
    QVERIFY(Device().WaitForCalls(2));
    QCOMPARE(manager->Read(), QByteArrayList{SIGN});
    QCOMPARE(StopDaemon(), 0);
    QCOMPARE(Daemon().Take(2).filter(u"1 [tasks/PlayMessage.cpp] PlayFile request error: "_s).size(), 1);
}

void Watchdog::NobodyIsToldWhereNobodyWatches()
{
    const auto manager = Watch();
    Daemon().Environment().remove(u"WATCHDOG_USEC"_s);
    QVERIFY(StartDaemon());
    QVERIFY(WaitForPasses(2));
    QCOMPARE(manager->Read(), QByteArrayList());
}

void Watchdog::AManagerThatCannotBeReachedIsAWarning()
{
    Watch().reset();
    QVERIFY(StartDaemon());
    QCOMPARE(Daemon().Take(2), QStringList(u"2 [main.cpp] Can't reach the service manager's watchdog"_s));
}

OZNA_CASE(Watchdog, Watchdog)
#include "tst_Watchdog.moc"
