#include "DeployTest.h"
#include "Lines.h"
#include "ScriptedScheduler.h"
#include "Suite.h"

#include <QDir>

using namespace Lines;
using namespace Qt::StringLiterals;

// A schedule is put in the place of the one that runs.
class DeployCommand final : public DeployTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheDaemonRunsTheNewFiles();
    void WhatIsThereAlreadyIsLoadedAnew();
    void AScheduleWithAMistakeIsNotDeployed();
    void ALineThatTheOldScheduleLosesIsToldAsItsOwn();
    void AWarningCountsWhereItIsAskedFor();
    void ARunningScheduleMayNameAPlaylistOutside();
    void AFileMayBeCalledLikeAnOption();
    void ItWaitsUntilNothingStarts();
    void WhatChangesWhileItWaitsIsNotDeployed();
    void WhatNeverEndsIsCutOnlyWhenTold();
    void ADisabledDaemonLoadsItLater();
    void WithoutADaemonNothingChanges();
    void ADaemonThatDoesNotLoadItGetsTheEarlierFilesBack();
    void TheFirstScheduleOfADaemon();
    void AFileOrUndoIsNeeded();
};

void DeployCommand::TheDaemonRunsTheNewFiles()
{
    Prepare();
    QVERIFY(StartAndTakeLog());
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    COMPARE_LINES(Shown(result.output).last(2), {u"deployed: DATA/schedule/schedule.csv"_s,
                                                 u"ozna-schedule deploy --undo brings the earlier one back"_s});
    QVERIFY(result.output.contains(u"set the master volume"_s));
    QVERIFY(Daemon().Take(4).contains(Loaded(2).first()));
    QCOMPARE(Schedule(), NEW);
    QCOMPARE(Playlist(), NEW_PLAYLIST);
    QCOMPARE(Content(u"deployed-before/schedule.csv/schedule/schedule.csv"_s), OLD);
    QCOMPARE(Content(u"deployed-before/schedule.csv/playlists/day"_s), OLD_PLAYLIST);
    QStringList names = QDir(DataPath({})).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    QCOMPARE(names.filter(u"deployed"_s), QStringList(u"deployed-before"_s));
    QCOMPARE(QDir(DataPath(u"tmp"_s)).isEmpty(), true);
}

// Nobody can tell whether the daemon has loaded them.
void DeployCommand::WhatIsThereAlreadyIsLoadedAnew()
{
    Prepare();
    WriteSchedule(NEW);
    WritePlaylist(NEW_PLAYLIST, u"day"_s);
    QVERIFY(StartAndTakeLog());
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(result.status, 0);
    QCOMPARE(Shown(result.output).last(), u"DATA/schedule/schedule.csv had that content: loaded anew"_s);
    QVERIFY(Daemon().Take(4).contains(Loaded(2).first()));
}

void DeployCommand::AScheduleWithAMistakeIsNotDeployed()
{
    Prepare();
    WriteFile(DataPath(u"to-come/schedule.csv"_s), NEW + "1111111|12:00:00|*|*|*|||PlayPlaylist|missing\n");
    QVERIFY(StartAndTakeLog());
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(result.status, 2);
    QVERIFY(result.errors.endsWith(u"ozna-schedule: not deployed: what runs stays as it is\n"_s));
    QCOMPARE(Schedule(), OLD);
    QCOMPARE(Playlist(), OLD_PLAYLIST);
    QCOMPARE(Daemon().Take(4), QStringList());
}

void DeployCommand::ALineThatTheOldScheduleLosesIsToldAsItsOwn()
{
    Prepare();
    WriteSchedule(OLD + "1111111|09:00:00|*|*|*|||volume|30\n");
    QVERIFY(StartDaemon());
    QCOMPARE(Daemon().Take(2).size(), 2);
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(result.status, 0);
    COMPARE_LINES(Shown(result.errors),
                  {u"DATA/schedule/schedule.csv:3: error: in the old schedule the daemon leaves the line out: task: no "
                   "task is called \"volume\"; did you mean Volume? Write it to the letter (the daemon logs \"Unknown "
                   "task (99)\")"_s});
    QCOMPARE(Schedule(), NEW);
}

void DeployCommand::AWarningCountsWhereItIsAskedFor()
{
    Prepare();
    WriteFile(DataPath(u"to-come/schedule.csv"_s), NEW + "1111111|13:00:00|*|*|*|||Volume|170\n");
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now --strict"_s + NewFile()).status, 1);
    QCOMPARE(Schedule(), OLD);
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
}

void DeployCommand::ItWaitsUntilNothingStarts()
{
    Prepare();
    WriteSchedule(OLD + "1111111|08:30:00|*|*|*|||Volume|30\n");
    QVERIFY(StartDaemon());
    const Process deploy = Launch(DeployArguments(NewFile().trimmed()), ToolEnvironment());
    QString output;
    const auto read = [&] { output += QString::fromUtf8(deploy->readAllStandardOutput()); };
    QVERIFY(WaitUntil([&] {
        read();
        return output.contains(u"waits until "_s);
    }));
    QVERIFY2(output.contains(u"waits until Mon 2024-01-15 08:30:15: Volume 30.0 (line 3) at 08:30:00\n"_s),
             qPrintable(output));
    QCOMPARE(Schedule(), OLD + "1111111|08:30:00|*|*|*|||Volume|30\n");
    QVERIFY(RunDue(1));
    Time().Set(MONDAY, {8, 30, 16});
    QVERIFY(WaitUntil([&] {
        read();
        return output.contains(u"deployed: "_s);
    }));
    QCOMPARE(Schedule(), NEW);
}

void DeployCommand::WhatChangesWhileItWaitsIsNotDeployed()
{
    Prepare();
    WriteSchedule(OLD + "1111111|08:30:00|*|*|*|||Volume|30\n");
    QVERIFY(StartDaemon());
    const Process deploy = Launch(DeployArguments(NewFile().trimmed()), ToolEnvironment());
    QVERIFY(WaitUntil([&] { return deploy->readAllStandardOutput().contains("waits until "); }));
    WriteFile(DataPath(u"to-come/playlists/day"_s), "three.mp3;60\n");
    QVERIFY(RunDue(1));
    Time().Set(MONDAY, {8, 30, 16});
    QVERIFY(WaitUntil([&] { return deploy->state() == QProcess::NotRunning; }));
    QCOMPARE(deploy->exitCode(), 3);
    QVERIFY(deploy->readAllStandardError().contains("has changed since it was checked: nothing was deployed\n"));
    QCOMPARE(Playlist(), OLD_PLAYLIST);
}

void DeployCommand::WhatNeverEndsIsCutOnlyWhenTold()
{
    Prepare();
    WriteSchedule("1111111|08:29:00|*|*|*|||Volume|10\n1111111|08:29:55|*|*|*|||PlayStream|8000/radio\n");
    QVERIFY(StartDaemon());
    Time().Set(MONDAY, {8, 29, 50});
    const Result result = RunDeploy(NewFile().trimmed());
    QCOMPARE(result.status, 3);
    QVERIFY2(result.errors.contains(u"there is no quiet moment within a day: PlayStream rtsp://<ServerIp>:8000/radio "
                                    "(line 2) plays from 08:29:55 on, without an end\nnothing was changed; --now does "
                                    "not wait\n"_s),
             qPrintable(result.errors));
    QVERIFY(Schedule() != NEW);
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    QCOMPARE(Schedule(), NEW);
}

void DeployCommand::ADisabledDaemonLoadsItLater()
{
    Prepare();
    WriteSchedule(OLD + "1111111|08:30:00|*|*|*|||Volume|30\n");
    QVERIFY(StartDaemon());
    QCOMPARE(Client().Call("SetEnabled", {false}), u"0"_s);
    Time().Set(MONDAY, {8, 29, 50}); // when a daemon that is enabled would be waited for
    const Result result = RunDeploy(NewFile().trimmed());
    QCOMPARE(result.status, 0);
    QVERIFY(result.output.contains(u"the daemon is disabled, and loads it when it is enabled\n"_s));
    QCOMPARE(Schedule(), NEW);
}

void DeployCommand::WithoutADaemonNothingChanges()
{
    Prepare();
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(result.status, 3);
    QCOMPARE(Schedule(), OLD);
    QCOMPARE(Playlist(), OLD_PLAYLIST);
}

void DeployCommand::ADaemonThatDoesNotLoadItGetsTheEarlierFilesBack()
{
    Prepare();
    const ScriptedScheduler scheduler(Bus().Connection(), u"org.freedesktop.DBus.Error.ServiceUnknown"_s);
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(result.status, 3);
    QVERIFY2(result.errors.endsWith(u"the earlier files are in their places; ozna-schedule reload has them loaded\n"_s),
             qPrintable(result.errors));
    QCOMPARE(Schedule(), OLD);
    QCOMPARE(Playlist(), OLD_PLAYLIST);
}

void DeployCommand::TheFirstScheduleOfADaemon()
{
    Prepare();
    QVERIFY(QFile::remove(DataPath(u"schedule/schedule.csv"_s)));
    QVERIFY(QFile::remove(DataPath(u"playlists/day"_s)));
    QVERIFY(StartDaemon());
    const Result result = RunDeploy(NewFile().trimmed());
    QCOMPARE(result.status, 0);
    QCOMPARE(Shown(result.output).last(), u"deployed: DATA/schedule/schedule.csv"_s);
    QCOMPARE(Playlist(), NEW_PLAYLIST);
}

void DeployCommand::AFileOrUndoIsNeeded()
{
    Prepare();
    for (const QString& arguments : {u"--now"_s, u"--undo"_s + NewFile()})
    {
        const Result result = RunDeploy(arguments);
        QCOMPARE(result.status, 3);
        QCOMPARE(result.errors, u"ozna-schedule: deploy needs a FILE, or --undo\n"_s);
    }
}

void DeployCommand::ARunningScheduleMayNameAPlaylistOutside()
{
    Prepare();
    WriteSchedule("1111111|12:00:00|*|*|*|||PlayPlaylist|../playlists/day\n");
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    QCOMPARE(Schedule(), NEW);
}

void DeployCommand::AFileMayBeCalledLikeAnOption()
{
    Prepare();
    WriteFile(DataPath(u"tmp/-x.csv"_s), NEW);
    QVERIFY(StartDaemon());
    const Process deploy(new QProcess);
    deploy->setProcessEnvironment(ToolEnvironment());
    deploy->setWorkingDirectory(DataPath(u"tmp"_s));
    deploy->setProgram(QStringLiteral(OZNA_BUILD_DIR "/ozna-schedule"));
    deploy->setArguments(DeployArguments(u"--now"_s).split(u' ') + QStringList{u"--"_s, u"-x.csv"_s});
    deploy->start();
    QVERIFY(WaitUntil([&] { return deploy->state() == QProcess::NotRunning; }));
    QCOMPARE(deploy->readAllStandardError(), QByteArray());
    QCOMPARE(Schedule(), NEW);
}

OZNA_CASE(Deploy, DeployCommand)
#include "tst_Deploy.moc"
