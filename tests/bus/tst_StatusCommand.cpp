#include "ControlTest.h"
#include "Suite.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

// What ozna-schedule status tells of the daemon.
class StatusCommand final : public ControlTest
{
    Q_OBJECT
private Q_SLOTS:
    void StatusTellsWhatRunsAndWhatComesNext();
    void StatusForMachines();
    void StatusOfADisabledDaemonHasNothingToCome();
    void WhatPlaysIsTold_data();
    void WhatPlaysIsTold();
    void WhatPlaysWithoutAnEndIsTold();
    void AFileThatCannotBeReadIsTold();
    void TheLastErrorsAndWarningsOfALogFile();
    void TheLastErrorsAndWarningsOfTheJournal();
    void WithoutALogThatIsTold();
    void PeersThatAreNotThereAreTold();

private:
    // An environment in which "journalctl" prints that, or fails.
    [[nodiscard]] QProcessEnvironment WithJournal(const QByteArray& output, int status = 0);
};

namespace
{

const QByteArray SCHEDULE = "1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n"
                            "1111111|09:00:00|*|*|*|||Volume|70\n"
                            "1111111|09:00|*|*|*|||Volume|70\n";
const QStringList REJECTED{u"1 [Action.cpp] Wrong action start time (09:00: hour:minute:second expected)"_s,
                           u"2 [Scheduler.cpp] Action ignored"_s};

} // namespace

QProcessEnvironment StatusCommand::WithJournal(const QByteArray& output, int status)
{
    const QString folder = DataPath(u"bin"_s);
    if (!QDir().mkpath(folder))
        qFatal("cannot make the folder");
    WriteFile(folder + u"/entries"_s, output);
    WriteFile(folder + u"/journalctl"_s, "#!/bin/sh\necho \"$@\" > " + QFile::encodeName(folder) + "/asked\ncat " +
                                             QFile::encodeName(folder) + "/entries\nexit " +
                                             QByteArray::number(status) + '\n');
    if (!QFile::setPermissions(folder + u"/journalctl"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        qFatal("cannot make it a program");
    QProcessEnvironment environment = Environment();
    environment.insert(u"PATH"_s, folder + u':' + environment.value(u"PATH"_s));
    return environment;
}

void StatusCommand::StatusTellsWhatRunsAndWhatComesNext()
{
    WriteSchedule(SCHEDULE);
    QVERIFY(StartDaemon());
    QCOMPARE(Daemon().Take(2), REJECTED);
    const Result result = Run(u"status"_s + Data(), WithJournal({}));
    QCOMPARE(result.status, 0);
    COMPARE_LINES(Shown(result.output),
                  {u"daemon    enabled, schedule.csv; runs since THEN"_s,
                   u"file      DATA/schedule/schedule.csv: 2 taken, 1 rejected"_s,
                   u"next      Mon 2024-01-15 08:30:00, in SOON: PlayMessage gong.mp3  (line 1)"_s,
                   u"peers     soundmanager, photomanager, lightmanager, freqmanager, gpsmanager, networkmanager, "
                   "updatemanager"_s,
                   u"records   no errors, no warnings in the journal"_s});
}

void StatusCommand::StatusForMachines()
{
    WriteSchedule(SCHEDULE);
    QVERIFY(StartDaemon());
    QCOMPARE(Daemon().Take(2), REJECTED);
    const Result result = Run(u"status --json"_s + Data(), WithJournal({}));
    const QJsonObject object = QJsonDocument::fromJson(result.output.toUtf8()).object();
    QCOMPARE(object.value("enabled"_L1).toBool(), true);
    QCOMPARE(object.value("file"_L1).toString(), u"schedule.csv"_s);
    QCOMPARE(object.value("taken"_L1).toInt(), 2);
    QCOMPARE(object.value("rejected"_L1).toInt(), 1);
    QCOMPARE(object.value("process"_L1).toInteger(), DaemonPid());
    QCOMPARE(object.value("next"_L1).toObject().value("start"_L1).toString(), u"2024-01-15T08:30:00+00:00"_s);
    QCOMPARE(object.value("peers"_L1).toObject().value("soundmanager"_L1).toBool(), true);
    QCOMPARE(object.value("records"_L1).toArray().size(), 0);
}

void StatusCommand::StatusOfADisabledDaemonHasNothingToCome()
{
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n");
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    const QStringList lines = Shown(Run(u"status"_s + Data(), WithJournal({})).output);
    QCOMPARE(lines.value(0), u"daemon    disabled, schedule.csv; runs since THEN"_s);
    QCOMPARE(lines.value(2), u"next      nothing: the daemon is disabled"_s);
    const QString json = Run(u"status --json"_s + Data(), WithJournal({})).output;
    QVERIFY(!QJsonDocument::fromJson(json.toUtf8()).object().contains("next"_L1));
}

void StatusCommand::WhatPlaysIsTold_data()
{
    QTest::addColumn<QTime>("now");
    QTest::addColumn<QStringList>("plays");
    QTest::newRow("while it plays")
        << QTime(8, 30)
        << QStringList{u"plays     PlayStream rtsp://<ServerIp>:8000/radio  (line 2), since %1 08:00:00"_s};
    QTest::newRow("when it was stopped") << QTime(9, 30) << QStringList();
    QTest::newRow("before it") << QTime(7, 30) << QStringList();
    QTest::newRow("while a playlist plays")
        << QTime(12, 0, 30) << QStringList{u"plays     PlayPlaylist day  (line 1), since %1 12:00:00"_s};
    QTest::newRow("when it has ended") << QTime(12, 1, 30) << QStringList();
}

// By a rehearsal from the start of the daemon's process, which is none of the clock that is set.
void StatusCommand::WhatPlaysIsTold()
{
    QFETCH(const QTime, now);
    QFETCH(QStringList, plays);
    const QDate day = QDate::currentDate().addDays(3);
    WriteSchedule("1111111|12:00:00|*|*|*|||PlayPlaylist|day\n1111111|08:00:00|*|*|*|||PlayStream|8000/radio\n"
                  "1111111|09:00:00|*|*|*|||StopStream\n");
    WritePlaylist("one.mp3;60\n", u"day"_s);
    Time().Set(day, now);
    QVERIFY(StartDaemon());
    plays.replaceInStrings(u"%1"_s, QLocale::c().toString(day, u"ddd yyyy-MM-dd"_s));
    COMPARE_LINES(Shown(Run(u"status"_s + Data(), WithJournal({})).output).filter(u"plays  "_s), plays);
}

void StatusCommand::WhatPlaysWithoutAnEndIsTold()
{
    const QDate day = QDate::currentDate().addDays(3);
    WriteSchedule("1111111|07:00:00|*|*|*|||PlayRadioFm|98.5\n1111111|09:00:00|*|*|*|||Volume|10\n");
    Time().Set(day, {8, 30});
    QVERIFY(StartDaemon());
    const QString since = QLocale::c().toString(day, u"ddd yyyy-MM-dd"_s);
    COMPARE_LINES(Shown(Run(u"status"_s + Data(), WithJournal({})).output).filter(u"plays  "_s),
                  {u"plays     PlayRadioFm 98.5 MHz  (line 1), since %1 07:00:00"_s.arg(since)});
}

void StatusCommand::AFileThatCannotBeReadIsTold()
{
    QVERIFY(StartDaemon());
    const Result result = Run(u"status"_s + Data(), WithJournal({}));
    QCOMPARE(result.status, 0);
    QCOMPARE(Shown(result.output).value(1), u"file      DATA/schedule/schedule.csv: No such file or directory"_s);
}

void StatusCommand::TheLastErrorsAndWarningsOfALogFile()
{
    QVERIFY(StartDaemon());
    QByteArray log = "noise\n1 /com/obj [Action.cpp:1] the first\n";
    for (const char* text : {"4 /com/obj [a.cpp:1] none", "2 /com/obj [b.cpp:2] two", "1 /com/obj [c.cpp:3] one\\x1b",
                             "2 /com/obj [d.cpp:4] three", "3 /com/obj [a.cpp:2] noted", "2 /com/obj [e.cpp:5] four",
                             "2 /com/obj [f.cpp:6] five", "more noise"})
        log += QByteArray(text) + '\n';
    WriteFile(DataPath(u"log"_s), log);
    const Result result = Run(u"status --log "_s + DataPath(u"log"_s) + Data());
    COMPARE_LINES(Shown(result.output).mid(4),
                  {u"records   warning [b.cpp:2] two"_s, u"          error [c.cpp:3] one\\x1b"_s,
                   u"          warning [d.cpp:4] three"_s, u"          warning [e.cpp:5] four"_s,
                   u"          warning [f.cpp:6] five"_s});
    const Result missing = Run(u"status --log /nonexistent"_s + Data());
    QCOMPARE(missing.status, 3);
    QCOMPARE(missing.errors, u"ozna-schedule: /nonexistent: No such file or directory\n"_s);
}

void StatusCommand::TheLastErrorsAndWarningsOfTheJournal()
{
    QVERIFY(StartDaemon());
    const QByteArray entries =
        "{\"__REALTIME_TIMESTAMP\":\"1705305600000000\",\"OZNA_LEVEL\":\"1\",\"PRIORITY\":\"3\","
        "\"MESSAGE\":\"[Action.cpp:44] Wrong\"}\n"
        "{\"__REALTIME_TIMESTAMP\":\"1705305601000000\",\"PRIORITY\":\"4\",\"MESSAGE\":[70,97,105,108]}\n"
        "{\"__REALTIME_TIMESTAMP\":\"1705305602000000\",\"PRIORITY\":\"3\",\"MESSAGE\":\"core\"}\n";
    const Result result = Run(u"status"_s + Data(), WithJournal(entries));
    COMPARE_LINES(Shown(result.output).mid(4), {u"records   Mon 2024-01-15 08:00:00 error [Action.cpp:44] Wrong"_s,
                                                u"          Mon 2024-01-15 08:00:01 warning Fail"_s,
                                                u"          Mon 2024-01-15 08:00:02 error core"_s});
    QFile asked(DataPath(u"bin/asked"_s));
    QVERIFY(asked.open(QIODevice::ReadOnly));
    QCOMPARE(asked.readAll(), "--user --unit ozna-scheduler.service --priority warning --lines 5 --output json "
                              "--no-pager --quiet\n");
}

void StatusCommand::WithoutALogThatIsTold()
{
    QVERIFY(StartDaemon());
    const QStringList lines = Shown(Run(u"status"_s + Data(), WithJournal({}, 1)).output);
    QCOMPARE(lines.value(4), u"records   there is no journal here: --log FILE reads a log file"_s);
}

void StatusCommand::PeersThatAreNotThereAreTold()
{
    QVERIFY(StartDaemon());
    StopDevice();
    const QStringList lines = Shown(Run(u"status"_s + Data(), WithJournal({})).output);
    QCOMPARE(lines.value(3), u"peers     none"_s);
    QCOMPARE(lines.value(4), u"          not on the bus: soundmanager, photomanager, lightmanager, freqmanager, "
                             "gpsmanager, networkmanager, updatemanager"_s);
}

OZNA_CASE(StatusCommand, StatusCommand)
#include "tst_StatusCommand.moc"
