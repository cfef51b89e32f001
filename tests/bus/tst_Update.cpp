#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

#include <csignal>

using namespace Lines;
using namespace Qt::StringLiterals;

// What the daemon makes of the update manager's announcements.
class Update : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void AnInstalledScheduleIsLoaded();
    void AnInstalledScheduleEnablesADisabledScheduler();
    void OtherAnnouncementsAreIgnored_data();
    void OtherAnnouncementsAreIgnored();
    void AStrangersAnnouncementIsIgnored();
    void AnUpdateManagerThatComesLaterIsHeard();
    void AnnouncementsThatWaitCostOneLoad();
    void AnnouncementsThatCameWhileTheProcessStoodStillCostOneLoad();

private:
    void StartWithLongSchedule();
    [[nodiscard]] qsizetype LoadsAfterAnnouncements();
};

namespace
{

const QByteArray ONE_LINE = "1111111|12:00:00|*|*|*|||StopMessage\n";
const QStringList CREATED_STOP{u"4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage"_s};
const QStringList UPDATED{u"4 [Scheduler.cpp] Schedule file updated"_s};
constexpr const char* FILES_UPDATED = "update.FilesUpdated";
constexpr int ANNOUNCEMENTS = 500;

} // namespace

void Update::AnInstalledScheduleIsLoaded()
{
    QVERIFY(StartAndTakeLog());
    WriteSchedule(ONE_LINE);
    Device().Emit(FILES_UPDATED, {0, 2});
    QVERIFY(Daemon().WaitForLog(STARTED.last()));
    COMPARE_LINES(Daemon().Take(4), UPDATED + RESTARTING + STOPPED + Loading(DataPath(u"schedule/schedule.csv"_s)) +
                                        CREATED_STOP + Loaded(1) + STARTED);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    COMPARE_LINES(Client().TakeSignals(), QStringList());
}

void Update::AnInstalledScheduleEnablesADisabledScheduler()
{
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    static_cast<void>(Client().WaitForSignals(1));
    static_cast<void>(Daemon().Take());
    WriteSchedule(ONE_LINE);
    Device().Emit(FILES_UPDATED, {0, 2});
    COMPARE_LINES(Client().WaitForSignals(1), {u"SchedulingEnabled(true,schedule.csv)"_s});
    COMPARE_LINES(Daemon().Take(4),
                  UPDATED + QStringList{u"2 [Scheduler.cpp] Scheduler is disabled: automatically re-enable it"_s} +
                      WAS_DISABLED + Loading(DataPath(u"schedule/schedule.csv"_s)) + CREATED_STOP + Loaded(1) +
                      STARTED + QStringList{u"4 [Scheduler.cpp] Scheduling enabled (schedule.csv)"_s});
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
}

void Update::OtherAnnouncementsAreIgnored_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QVariantList>("values");
    const auto row = [](const char* name, const char* signal, const QVariantList& values) {
        QTest::newRow(name) << QByteArray(signal) << values;
    };
    row("an update that has not completed", FILES_UPDATED, {1, 2});
    row("an update that has failed", FILES_UPDATED, {-1, 2});
    row("another kind of file", FILES_UPDATED, {0, 1});
    row("another kind of file, above", FILES_UPDATED, {0, 3});
    row("the two values in the wrong order", FILES_UPDATED, {2, 0});
    row("the beginning of an update", "update.FilesUpdateStarted", {0, 2});
    row("without values", FILES_UPDATED, {});
    row("with texts", FILES_UPDATED, {u"0"_s, u"2"_s});
    row("with one value", FILES_UPDATED, {0});
}

void Update::OtherAnnouncementsAreIgnored()
{
    QFETCH(QByteArray, signal);
    QFETCH(QVariantList, values);
    QVERIFY(StartAndTakeLog());
    Device().Emit(signal.constData(), values);
    // What is heard in the end shows that the announcement before it has been heard, too.
    Device().Emit(FILES_UPDATED, {0, 2});
    QVERIFY(Daemon().WaitForLog(STARTED.last()));
    COMPARE_LINES(Daemon().Take(4),
                  UPDATED + RESTARTING + STOPPED + Loading(DataPath(u"schedule/schedule.csv"_s)) + NOT_FOUND + STARTED);
}

void Update::AStrangersAnnouncementIsIgnored()
{
    QVERIFY(StartAndTakeLog());
    QDBusMessage signal = QDBusMessage::createSignal(u"/com/kestrelix/ozna/updatemanager/updateobj"_s,
                                                     u"com.kestrelix.ozna.updateinterface"_s, u"FilesUpdated"_s);
    signal.setArguments({0, 2});
    QVERIFY(Bus().Connection().send(signal));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    COMPARE_LINES(Daemon().Take(4), QStringList());
}

void Update::AnUpdateManagerThatComesLaterIsHeard()
{
    Device().SetPresent("update", false);
    QVERIFY(StartAndTakeLog());
    Device().SetPresent("update", true);
    // The daemon hears of the new owner on its own way.
    QVERIFY(WaitUntil([this] {
        Device().Emit(FILES_UPDATED, {0, 2});
        return Daemon().Log().contains(UPDATED.first());
    }));
}

// A load of it takes some time.
void Update::StartWithLongSchedule()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||Volume|1\n" + ONE_LINE.repeated(3000) +
                  "1111111|08:30:12|*|*|*|||Volume|2\n");
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    QVERIFY(StartDaemon());
}

// How many loads the announcements have cost, when the last of them has been heard.
qsizetype Update::LoadsAfterAnnouncements()
{
    const bool isHeard = WaitUntil([this] { return Daemon().Log().count(UPDATED.first()) == ANNOUNCEMENTS; });
    // What waited has been handled when this is answered.
    static_cast<void>(Client().Call("IsEnabled"));
    return isHeard ? Daemon().Log().count(STARTED.last()) - 1 : ANNOUNCEMENTS;
}

void Update::AnnouncementsThatWaitCostOneLoad()
{
    constexpr int BLOCKED_MS = 2000;
    StartWithLongSchedule();
    QVERIFY(Daemon().WaitForLog(u"4 [Scheduler.cpp] EARLY action found: 5 (Volume)"_s));
    Device().AnswerStatus("sound.SetMasterVolume", 0, BLOCKED_MS, 1);
    Time().Set(MONDAY, {8, 30});
    QVERIFY(Device().WaitForCalls(1));
    Device().Emit(FILES_UPDATED, {0, 2}, ANNOUNCEMENTS);
    const qsizetype loads = LoadsAfterAnnouncements();
    // Due ten seconds after the loop goes on, and not missed.
    QVERIFY(Device().WaitForCalls(2));
    COMPARE_LINES(Device().Calls(), {u"sound.SetMasterVolume d 1"_s, u"sound.SetMasterVolume d 2"_s});
    QCOMPARE(loads, 1);
}

void Update::AnnouncementsThatCameWhileTheProcessStoodStillCostOneLoad()
{
    StartWithLongSchedule();
    Daemon().Signal(SIGSTOP);
    QVERIFY(Daemon().WaitUntilHalted());
    Device().Emit(FILES_UPDATED, {0, 2}, ANNOUNCEMENTS);
    Daemon().Signal(SIGCONT);
    QCOMPARE(LoadsAfterAnnouncements(), 1);
}

OZNA_CASE(Update, Update)
#include "tst_Update.moc"
