#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

using namespace Lines;

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
const QStringList CREATED_STOP{QStringLiteral("4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage")};
} // namespace

QStringList Interface::Load(const QString& name, int tasks) const
{
    QStringList lines = Loading(DataPath(QStringLiteral("schedule/") + name));
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
        Client().CallAt(SchedulerClient::PATH, QStringLiteral("org.freedesktop.DBus.Introspectable"), "Introspect");
    COMPARE_LINES(found.split(QLatin1Char('\n')), QString::fromUtf8(expected.readAll()).split(QLatin1Char('\n')));
}

void Interface::EnablingWhatIsEnabledReloadsNothing()
{
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("SetEnabled", {true}), QStringLiteral("0"));
    COMPARE_LINES(Client().WaitForSignals(1), {QStringLiteral("SchedulingEnabled(true,schedule.csv)")});
    COMPARE_LINES(Daemon().Take(5), WAS_ENABLED);
}

void Interface::DisablingAndEnablingAgain()
{
    WriteSchedule(ONE_LINE);
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("SetEnabled", {false}), QStringLiteral("0"));
    COMPARE_LINES(Client().WaitForSignals(1), {QStringLiteral("SchedulingEnabled(false,schedule.csv)")});
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,false,schedule.csv"));
    COMPARE_LINES(Daemon().Take(4), WAS_ENABLED + STOPPED + DISABLED);

    QCOMPARE(Client().Call("SetEnabled", {true}), QStringLiteral("0"));
    COMPARE_LINES(Client().WaitForSignals(1), {QStringLiteral("SchedulingEnabled(true,schedule.csv)")});
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
    COMPARE_LINES(Daemon().Take(4),
                  WAS_DISABLED + Load(QStringLiteral("schedule.csv"), 1) +
                      QStringList{QStringLiteral("4 [Scheduler.cpp] Scheduling enabled (schedule.csv)")});
}

void Interface::DisablingTwiceTellsTheBusTwice()
{
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), QStringLiteral("0"));
    static_cast<void>(Client().WaitForSignals(1));
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("SetEnabled", {false}), QStringLiteral("0"));
    COMPARE_LINES(Client().WaitForSignals(1), {QStringLiteral("SchedulingEnabled(false,schedule.csv)")});
    COMPARE_LINES(Daemon().Take(), WAS_DISABLED);
}

void Interface::AnotherScheduleFileIsLoadedBeforeTheReply()
{
    WriteSchedule(ONE_LINE + ONE_LINE, QStringLiteral("other.csv"));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("SetScheduleFile", {QStringLiteral("other.csv")}), QStringLiteral("0"));
    COMPARE_LINES(Daemon().Take(4), QStringList{QStringLiteral("4 [Scheduler.cpp] Schedule file set to other.csv")} +
                                        RESTARTING + STOPPED + Load(QStringLiteral("other.csv"), 2));
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,other.csv"));
    COMPARE_LINES(Client().TakeSignals(), QStringList());
}

void Interface::AnotherScheduleFileWhileDisabledIsUsedAtTheNextEnable()
{
    WriteSchedule(ONE_LINE, QStringLiteral("other.csv"));
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), QStringLiteral("0"));
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("SetScheduleFile", {QStringLiteral("other.csv")}), QStringLiteral("0"));
    COMPARE_LINES(Daemon().Take(), {QStringLiteral("4 [Scheduler.cpp] Schedule file set to other.csv")});
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,false,other.csv"));

    QCOMPARE(Client().Call("SetEnabled", {true}), QStringLiteral("0"));
    COMPARE_LINES(Daemon().Take(4),
                  WAS_DISABLED + Load(QStringLiteral("other.csv"), 1) +
                      QStringList{QStringLiteral("4 [Scheduler.cpp] Scheduling enabled (other.csv)")});
    COMPARE_LINES(Client().WaitForSignals(2), {QStringLiteral("SchedulingEnabled(false,schedule.csv)"),
                                               QStringLiteral("SchedulingEnabled(true,other.csv)")});
}

void Interface::ReloadReadsTheFileAgain()
{
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    WriteSchedule(ONE_LINE);
    QCOMPARE(Client().Call("Reload"), QStringLiteral("0"));
    COMPARE_LINES(Daemon().Take(4), RESTARTING + STOPPED + Load(QStringLiteral("schedule.csv"), 1));
    COMPARE_LINES(Client().TakeSignals(), QStringList());
}

void Interface::ReloadWhileDisabledDoesNothing()
{
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), QStringLiteral("0"));
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("Reload"), QStringLiteral("0"));
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,false,schedule.csv"));
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
    const QString unknown = QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod");
    const auto row = [&](const char* name, const char* method, const QVariantList& arguments) {
        QTest::newRow(name) << path << interface << QByteArray(method) << arguments << unknown;
    };
    row("SetEnabled without a value", "SetEnabled", {});
    row("SetEnabled with a text", "SetEnabled", {QStringLiteral("false")});
    row("SetEnabled with a number", "SetEnabled", {0});
    row("SetEnabled with two values", "SetEnabled", {false, false});
    row("SetScheduleFile without a name", "SetScheduleFile", {});
    row("SetScheduleFile with a number", "SetScheduleFile", {7});
    row("SetScheduleFile with two names", "SetScheduleFile", {QStringLiteral("a.csv"), QStringLiteral("b.csv")});
    row("SetScheduleFile with a list", "SetScheduleFile", {QStringList{QStringLiteral("a.csv")}});
    row("Reload with a value", "Reload", {true});
    row("IsEnabled with a value", "IsEnabled", {true});
    row("a method that there is not", "Stop", {});
    row("a method in the wrong case", "reload", {});
    row("a private slot of the scheduler", "CheckFarActions", {});
    row("a slot that only peers' signals reach", "OnFilesUpdated", {0, 2});
    QTest::newRow("an interface that there is not")
        << path << QStringLiteral("com.kestrelix.ozna.nointerface") << QByteArray("Reload") << QVariantList()
        << QStringLiteral("org.freedesktop.DBus.Error.UnknownInterface");
    QTest::newRow("an object that there is not")
        << QStringLiteral("/com/kestrelix/ozna/scheduler/noobj") << interface << QByteArray("Reload") << QVariantList()
        << QStringLiteral("org.freedesktop.DBus.Error.UnknownObject");
}

void Interface::AMalformedCallChangesNothing()
{
    QFETCH(QString, path);
    QFETCH(QString, interface);
    QFETCH(QByteArray, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, error);
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().CallAt(path, interface, method.constData(), arguments), error);
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
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
    QTest::newRow("empty") << QString() << QString() << OpenError(QStringLiteral("Is a directory"));
    row("a path upwards", QStringLiteral("../other"), QStringLiteral("../other"));
    row("not of this alphabet", QStringLiteral("gr\u00fc\u00df\u20ac.csv"), QStringLiteral("gr\u00fc\u00df\u20ac.csv"));
    row("percent signs", QStringLiteral("%s%n%d.csv"), QStringLiteral("%s%n%d.csv"));
    row("line breaks and escape sequences", QStringLiteral("a\nb\r\t\x1b[31m.csv"),
        QStringLiteral("a\\nb\\r\\t\\x1b[31m.csv"));
}

void Interface::AStrangeScheduleFileNameIsKeptAsItIs()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    QFETCH(QStringList, reason);
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QCOMPARE(Client().Call("SetScheduleFile", {name}), QStringLiteral("0"));
    COMPARE_LINES(Daemon().Take(4),
                  QStringList{QStringLiteral("4 [Scheduler.cpp] Schedule file set to %1").arg(shown)} + RESTARTING +
                      STOPPED + Loading(DataPath(QStringLiteral("schedule/")) + shown) + NOT_FOUND + reason + STARTED);
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,") + name);
}

OZNA_CASE(Interface, Interface)
#include "tst_Interface.moc"
