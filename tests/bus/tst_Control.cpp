#include "ControlTest.h"
#include "Lines.h"
#include "ScriptedScheduler.h"
#include "Suite.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

using namespace Lines;
using namespace Qt::StringLiterals;

// The tool's commands that steer the daemon.
class Control final : public ControlTest
{
    Q_OBJECT
private Q_SLOTS:
    void EnableAndDisable();
    void ReloadReadsTheFileAnew();
    void ReloadLoadsNothingWhileTheDaemonIsDisabled();
    void UseTakesAFileOfTheFolder();
    void UseForMachines();
    void UseRefusesWhatIsNotThere_data();
    void UseRefusesWhatIsNotThere();
    void WatchFollowsTheDaemon();
    void WatchForMachines();
    void WatchTellsAnActionThatHasNoNameByItsNumber();
    void WatchEndsWithTheBus();
    void NobodyToTalkTo_data();
    void NobodyToTalkTo();
    void ARefusalIsPutInWords_data();
    void ARefusalIsPutInWords();
    void CheckWarnsOfLinesWhosePeerIsNotThere();
};

void Control::EnableAndDisable()
{
    QVERIFY(StartAndTakeLog());
    Result result = Run(u"disable"_s);
    QCOMPARE(result.status, 0);
    QCOMPARE(result.output, u"disabled, schedule.csv\n"_s);
    QCOMPARE(Client().WaitForSignals(1), QStringList(u"SchedulingEnabled(false,schedule.csv)"_s));
    result = Run(u"enable --json"_s);
    QCOMPARE(QJsonDocument::fromJson(result.output.toUtf8()).object(),
             (QJsonObject{{u"enabled"_s, true}, {u"file"_s, u"schedule.csv"_s}}));
    QCOMPARE(Client().WaitForSignals(1), QStringList(u"SchedulingEnabled(true,schedule.csv)"_s));
}

void Control::ReloadReadsTheFileAnew()
{
    QVERIFY(StartAndTakeLog());
    WriteSchedule("1111111|12:00:00|*|*|*|||StopMessage\n");
    const Result result = Run(u"reload"_s);
    QCOMPARE(result.output, u"enabled, schedule.csv\n"_s);
    QVERIFY(Daemon().Take(4).contains(Loaded(1).first()));
}

void Control::ReloadLoadsNothingWhileTheDaemonIsDisabled()
{
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    const Result result = Run(u"reload"_s);
    QCOMPARE(result.output, u"disabled, schedule.csv\n"_s);
    QCOMPARE(result.errors, u"ozna-schedule: nothing was loaded: the daemon is disabled\n"_s);
}

void Control::UseTakesAFileOfTheFolder()
{
    WriteSchedule("1111111|12:00:00|*|*|*|||StopMessage\n# summer\nnonsense\n", u"summer.csv"_s);
    QVERIFY(StartAndTakeLog());
    const Result result = Run(u"use summer.csv"_s + Data());
    QCOMPARE(result.status, 0);
    COMPARE_LINES(Shown(result.output), {u"enabled, summer.csv"_s, u"DATA/schedule/summer.csv: 1 taken, 1 rejected"_s});
    QCOMPARE(result.errors, QString());
    QVERIFY(Daemon().Take(4).contains(Loaded(1).first()));
}

void Control::UseForMachines()
{
    WriteSchedule("1111111|12:00:00|*|*|*|||StopMessage\nnonsense\n1111111|12:00:00|*|*|*|||Volume\n", u"summer.csv"_s);
    QVERIFY(StartAndTakeLog());
    const Result result = Run(u"use summer.csv --json"_s + Data());
    QVERIFY(Daemon().Take(4).contains(Loaded(1).first()));
    QCOMPARE(QJsonDocument::fromJson(result.output.toUtf8()).object(),
             (QJsonObject{{u"enabled"_s, true}, {u"file"_s, u"summer.csv"_s}, {u"taken"_s, 1}, {u"rejected"_s, 2}}));
}

void Control::UseRefusesWhatIsNotThere_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("error");
    QTest::newRow("no such file") << u"winter.csv"_s << u"DATA/schedule/winter.csv: there is no such file"_s;
    QTest::newRow("a path") << u"../schedule.csv"_s
                            << u"../schedule.csv: is a path; the daemon takes the name of a file in DATA/schedule/"_s;
}

void Control::UseRefusesWhatIsNotThere()
{
    QFETCH(QString, name);
    QFETCH(QString, error);
    QVERIFY(StartAndTakeLog());
    const Result result = Run(u"use "_s + name + Data());
    QCOMPARE(result.status, 3);
    QCOMPARE(Shown(result.errors), QStringList(u"ozna-schedule: "_s + error));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QCOMPARE(Daemon().Take(4), QStringList());
}

void Control::WatchFollowsTheDaemon()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||19|1,1\n");
    QVERIFY(StartDaemon());
    const Process watch = Launch(u"watch"_s, Environment());
    QString output;
    const auto waitFor = [&](const QString& words) {
        return WaitUntil([&] {
            output += QString::fromUtf8(watch->readAllStandardOutput());
            return output.contains(words);
        });
    };
    QVERIFY(waitFor(u"  enabled, schedule.csv\n"_s));
    QVERIFY(RunDue(1));
    QVERIFY(waitFor(u"  PDD action expected: STREAM_MIC on\n"_s));
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    QVERIFY(waitFor(u"  disabled, schedule.csv\n"_s));
    QCOMPARE(StopDaemon(), 0);
    QVERIFY(waitFor(u"  the daemon has left the bus\n"_s));
    static const QRegularExpression form(u"\\A(Mon 2024-01-15 08:\\d\\d:\\d\\d  [^\\n]+\\n)+\\z"_s);
    QVERIFY2(form.match(output).hasMatch(), qPrintable(output));
}

void Control::WatchForMachines()
{
    QVERIFY(StartDaemon());
    const Process watch = Launch(u"watch --json"_s, Environment());
    QVERIFY(WaitUntil([&] { return watch->canReadLine(); }));
    QJsonObject object = QJsonDocument::fromJson(watch->readLine()).object();
    QVERIFY(object.take("time"_L1).toString().startsWith(u"2024-01-15T08:"_s));
    QCOMPARE(object, (QJsonObject{{u"what"_s, u"state"_s}, {u"enabled"_s, true}, {u"file"_s, u"schedule.csv"_s}}));
}

void Control::WatchTellsAnActionThatHasNoNameByItsNumber()
{
    const ScriptedScheduler scheduler(Bus().Connection());
    const Process watch = Launch(u"watch"_s, Environment());
    QVERIFY(WaitUntil([&] { return watch->canReadLine(); }));
    QDBusMessage signal =
        QDBusMessage::createSignal(SchedulerClient::PATH, SchedulerClient::INTERFACE, u"ExpectedPddAction"_s);
    signal.setArguments({7U, false});
    QVERIFY(Bus().Connection().send(signal));
    QByteArray output;
    QVERIFY(WaitUntil([&] {
        output += watch->readAllStandardOutput();
        return output.contains("  PDD action expected: 7 off\n");
    }));
}

void Control::WatchEndsWithTheBus()
{
    const ScriptedScheduler scheduler(Bus().Connection());
    const Process watch = Launch(u"watch"_s, Environment());
    QVERIFY(WaitUntil([&] { return watch->canReadLine(); }));
    Bus().Kill();
    QVERIFY(WaitUntil([&] { return watch->state() == QProcess::NotRunning; }));
    QCOMPARE(watch->exitCode(), 3);
    QCOMPARE(watch->readAllStandardError(), "ozna-schedule: the session bus is gone\n");
}

void Control::NobodyToTalkTo_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("error");
    QTest::newRow("no address") << QString() << u"there is no session bus here: DBUS_SESSION_BUS_ADDRESS is not set"_s;
    QTest::newRow("no bus") << u"unix:path=/nonexistent"_s
                            << u"the session bus at unix:path=/nonexistent cannot be reached: Failed to connect to "
                               "socket /nonexistent: No such file or directory"_s;
    QTest::newRow("no daemon") << u"the test's"_s << u"no scheduler runs on this session bus"_s;
}

void Control::NobodyToTalkTo()
{
    QFETCH(QString, address);
    QFETCH(QString, error);
    QProcessEnvironment environment = Environment();
    environment.remove(u"XDG_RUNTIME_DIR"_s);
    if (address != u"the test's"_s)
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
    for (const char* command : {"status", "enable", "disable", "reload", "use schedule.csv", "watch"})
    {
        const Result result = Run(QString::fromLatin1(command), environment);
        QCOMPARE(result.status, 3);
        QCOMPARE(result.errors.section(u'\n', 0, 0), u"ozna-schedule: "_s + error);
        QCOMPARE(result.output, QString());
    }
}

void Control::ARefusalIsPutInWords_data()
{
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* error, const char* words) {
        QTest::newRow(error) << u"org.freedesktop.DBus.Error."_s + QLatin1StringView(error)
                             << QString::fromLatin1(words);
    };
    row("AccessDenied", "the bus does not let this user reach the daemon: run the tool as the daemon's user");
    row("NoReply", "the daemon does not answer: a peer may keep it waiting, or it has ended");
    row("ServiceUnknown", "the daemon has left the bus");
    row("Failed", "the daemon answers with an error: scripted");
}

void Control::ARefusalIsPutInWords()
{
    QFETCH(QString, error);
    QFETCH(QString, words);
    const ScriptedScheduler scheduler(Bus().Connection(), error, true);
    const Result result = Run(u"reload"_s);
    QCOMPARE(result.status, 3);
    QCOMPARE(result.errors.section(u'\n', 0, 0), u"ozna-schedule: "_s + words);
}

void Control::CheckWarnsOfLinesWhosePeerIsNotThere()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||Volume|70\n1111111|08:31:00|*|*|*|||19|1,1\n");
    const QString check = u"check --peers "_s + DataPath(u"schedule/schedule.csv"_s);
    QCOMPARE(Run(check).status, 0);
    QVERIFY(!Run(check).output.contains(u"absent-peer"_s));
    StopDevice();
    const QStringList lines = Shown(Run(check).output);
    QCOMPARE(lines.filter(u"absent-peer"_s).size(), 1);
    QVERIFY2(lines.value(0).contains(u"asks the soundmanager, which is not on the session bus"_s),
             qPrintable(lines.value(0)));
    QVERIFY(!Run(u"check "_s + DataPath(u"schedule/schedule.csv"_s)).output.contains(u"absent-peer"_s));
}

OZNA_CASE(Control, Control)
#include "tst_Control.moc"
