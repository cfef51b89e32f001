#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// The exported interface: its introspection, its methods and signals, and calls that are none.
class Interface : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void IsDescribedByItsIntrospection();
    void EnablingWhatIsEnabledReloadsNothing();
    void DisablingAndEnablingAgain();
    void DisablingTwiceTellsTheBusTwice();
    void AnotherScheduleFileIsLoadedBeforeTheReply();
    void AnotherScheduleFileWhileDisabledIsUsedAtTheNextEnable();
    void ReloadReadsTheFileAgain();
    void ReloadWhileDisabledDoesNothing();
    void AMalformedCallChangesNothing_data();
    void AMalformedCallChangesNothing();
    void AStrangeScheduleFileNameIsKeptAsItIs_data();
    void AStrangeScheduleFileNameIsKeptAsItIs();

private:
    QStringList Load(const QString& name, int tasks) const;
};

namespace
{
const QByteArray ONE_LINE = "1111111|12:00:00|*|*|*|||StopMessage\n";
const QStringList CREATED_STOP{u"4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage"_s};
} // namespace

QStringList Interface::Load(const QString& name, int tasks) const
{
    QStringList lines = Loading(DataPath(u"schedule/"_s + name));
    for (int i = 0; i < tasks; ++i)
        lines += CREATED_STOP;
    return lines + Loaded(tasks) + STARTED;
}

void Interface::IsDescribedByItsIntrospection()
{
    QVERIFY(StartDaemon());
    QFile expected(QStringLiteral(OZNA_TEST_DATA "/introspection.xml"));
    QVERIFY(expected.open(QIODevice::ReadOnly));
    const QString found =
        Client().CallAt(SchedulerClient::PATH, u"org.freedesktop.DBus.Introspectable"_s, "Introspect");
    COMPARE_LINES(found.split(u'\n'), QString::fromUtf8(expected.readAll()).split(u'\n'));
}

void Interface::EnablingWhatIsEnabledReloadsNothing()
{
    QVERIFY(StartAndTakeLog());
    QCOMPARE(Client().Call("SetEnabled", {true}), u"0"_s);
    COMPARE_LINES(Client().WaitForSignals(1), {u"SchedulingEnabled(true,schedule.csv)"_s});
    COMPARE_LINES(Daemon().Take(5), WAS_ENABLED);
}

void Interface::DisablingAndEnablingAgain()
{
    WriteSchedule(ONE_LINE);
    QVERIFY(StartAndTakeLog());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    COMPARE_LINES(Client().WaitForSignals(1), {u"SchedulingEnabled(false,schedule.csv)"_s});
    QCOMPARE(Client().Call("IsEnabled"), u"0,false,schedule.csv"_s);
    COMPARE_LINES(Daemon().Take(4), WAS_ENABLED + STOPPED + DISABLED);

    QCOMPARE(Client().Call("SetEnabled", {true}), u"0"_s);
    COMPARE_LINES(Client().WaitForSignals(1), {u"SchedulingEnabled(true,schedule.csv)"_s});
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    COMPARE_LINES(Daemon().Take(4), WAS_DISABLED + Load(u"schedule.csv"_s, 1) +
                                        QStringList{u"4 [Scheduler.cpp] Scheduling enabled (schedule.csv)"_s});
}

void Interface::DisablingTwiceTellsTheBusTwice()
{
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    static_cast<void>(Client().WaitForSignals(1));
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    COMPARE_LINES(Client().WaitForSignals(1), {u"SchedulingEnabled(false,schedule.csv)"_s});
    COMPARE_LINES(Daemon().Take(), WAS_DISABLED);
}

void Interface::AnotherScheduleFileIsLoadedBeforeTheReply()
{
    WriteSchedule(ONE_LINE + ONE_LINE, u"other.csv"_s);
    QVERIFY(StartAndTakeLog());
    QCOMPARE(Client().Call("SetScheduleFile", {u"other.csv"_s}), u"0"_s);
    COMPARE_LINES(Daemon().Take(4), QStringList{u"4 [Scheduler.cpp] Schedule file set to other.csv"_s} + RESTARTING +
                                        STOPPED + Load(u"other.csv"_s, 2));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,other.csv"_s);
    COMPARE_LINES(Client().TakeSignals(), QStringList());
}

void Interface::AnotherScheduleFileWhileDisabledIsUsedAtTheNextEnable()
{
    WriteSchedule(ONE_LINE, u"other.csv"_s);
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("SetScheduleFile", {u"other.csv"_s}), u"0"_s);
    COMPARE_LINES(Daemon().Take(), {u"4 [Scheduler.cpp] Schedule file set to other.csv"_s});
    QCOMPARE(Client().Call("IsEnabled"), u"0,false,other.csv"_s);

    QCOMPARE(Client().Call("SetEnabled", {true}), u"0"_s);
    COMPARE_LINES(Daemon().Take(4), WAS_DISABLED + Load(u"other.csv"_s, 1) +
                                        QStringList{u"4 [Scheduler.cpp] Scheduling enabled (other.csv)"_s});
    COMPARE_LINES(Client().WaitForSignals(2),
                  {u"SchedulingEnabled(false,schedule.csv)"_s, u"SchedulingEnabled(true,other.csv)"_s});
}

void Interface::ReloadReadsTheFileAgain()
{
    QVERIFY(StartAndTakeLog());
    WriteSchedule(ONE_LINE);
    QCOMPARE(Client().Call("Reload"), u"0"_s);
    COMPARE_LINES(Daemon().Take(4), RESTARTING + STOPPED + Load(u"schedule.csv"_s, 1));
    COMPARE_LINES(Client().TakeSignals(), QStringList());
}

void Interface::ReloadWhileDisabledDoesNothing()
{
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("Reload"), u"0"_s);
    QCOMPARE(Client().Call("IsEnabled"), u"0,false,schedule.csv"_s);
    COMPARE_LINES(Daemon().Take(), QStringList());
}

void Interface::AMalformedCallChangesNothing_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("interface");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("error");

    const QString path = SchedulerClient::PATH;
    const QString interface = SchedulerClient::INTERFACE;
    const QString unknown = u"org.freedesktop.DBus.Error.UnknownMethod"_s;
    const auto row = [&](const char* name, const char* method, const QVariantList& arguments) {
        QTest::newRow(name) << path << interface << QByteArray(method) << arguments << unknown;
    };
    row("SetEnabled without a value", "SetEnabled", {});
    row("SetEnabled with a text", "SetEnabled", {u"false"_s});
    row("SetEnabled with a number", "SetEnabled", {0});
    row("SetEnabled with two values", "SetEnabled", {false, false});
    row("SetScheduleFile without a name", "SetScheduleFile", {});
    row("SetScheduleFile with a number", "SetScheduleFile", {7});
    row("SetScheduleFile with two names", "SetScheduleFile", {u"a.csv"_s, u"b.csv"_s});
    row("SetScheduleFile with a list", "SetScheduleFile", {QStringList{u"a.csv"_s}});
    row("Reload with a value", "Reload", {true});
    row("IsEnabled with a value", "IsEnabled", {true});
    row("a method that there is not", "Stop", {});
    row("a method in the wrong case", "reload", {});
    row("a private slot of the scheduler", "CheckFarActions", {});
    row("a slot that only peers' signals reach", "OnFilesUpdated", {0, 2});
    QTest::newRow("an interface that there is not")
        << path << u"com.kestrelix.ozna.nointerface"_s << QByteArray("Reload") << QVariantList()
        << u"org.freedesktop.DBus.Error.UnknownInterface"_s;
    QTest::newRow("an object that there is not")
        << u"/com/kestrelix/ozna/scheduler/noobj"_s << interface << QByteArray("Reload") << QVariantList()
        << u"org.freedesktop.DBus.Error.UnknownObject"_s;
}

void Interface::AMalformedCallChangesNothing()
{
    QFETCH(QString, path);
    QFETCH(QString, interface);
    QFETCH(QByteArray, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, error);
    QVERIFY(StartAndTakeLog());
    QCOMPARE(Client().CallAt(path, interface, method.constData(), arguments), error);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    COMPARE_LINES(Daemon().Take(5), QStringList());
    COMPARE_LINES(Client().TakeSignals(), QStringList());
}

void Interface::AStrangeScheduleFileNameIsKeptAsItIs_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("reason");
    const auto row = [](const char* title, const QString& name, const QString& shown) {
        QTest::newRow(title) << name << shown << QStringList();
    };
    QTest::newRow("empty") << QString() << QString() << OpenError(u"Is a directory"_s);
    row("a path upwards", u"../other"_s, u"../other"_s);
    row("not of this alphabet", u"gr\u00fc\u00df\u20ac.csv"_s, u"gr\u00fc\u00df\u20ac.csv"_s);
    row("percent signs", u"%s%n%d.csv"_s, u"%s%n%d.csv"_s);
    row("line breaks and escape sequences", u"a\nb\r\t\x1b[31m.csv"_s, u"a\\nb\\r\\t\\x1b[31m.csv"_s);
}

void Interface::AStrangeScheduleFileNameIsKeptAsItIs()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    QFETCH(QStringList, reason);
    QVERIFY(StartAndTakeLog());
    QCOMPARE(Client().Call("SetScheduleFile", {name}), u"0"_s);
    COMPARE_LINES(Daemon().Take(4), QStringList{u"4 [Scheduler.cpp] Schedule file set to %1"_s.arg(shown)} +
                                        RESTARTING + STOPPED + Loading(DataPath(u"schedule/"_s) + shown) + NOT_FOUND +
                                        reason + STARTED);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,"_s + name);
}

OZNA_CASE(Interface, Interface)
#include "tst_Interface.moc"
