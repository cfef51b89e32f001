#include "DeployTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// What was replaced is brought back.
class DeployUndo final : public DeployTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheEarlierFilesAreBroughtBack();
    void WithoutAnEarlierOneNothingIsBroughtBack();
    void AScheduleWithoutPlaylistsComesBack();
    void APlaylistOfAnotherScheduleComesBackAsWell();
    void WhatRanComesBackWithItsMistakes();
    void EachScheduleHasItsOwnEarlierOne();
    void WhatCannotBeBroughtBackStaysKept();
};

void DeployUndo::TheEarlierFilesAreBroughtBack()
{
    Prepare();
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    QCOMPARE(RunDeploy(u"--now --undo"_s).status, 0);
    QCOMPARE(Schedule(), OLD);
    QCOMPARE(Playlist(), OLD_PLAYLIST);
    QCOMPARE(RunDeploy(u"--now --undo"_s).status, 0);
    QCOMPARE(Schedule(), NEW);
    QCOMPARE(Playlist(), NEW_PLAYLIST);
}

void DeployUndo::WithoutAnEarlierOneNothingIsBroughtBack()
{
    Prepare();
    QVERIFY(StartDaemon());
    const Result result = RunDeploy(u"--now --undo"_s);
    QCOMPARE(result.status, 3);
    QCOMPARE(result.errors, u"ozna-schedule: there is nothing to bring back: no earlier schedule.csv was kept\n"_s);
}

void DeployUndo::AScheduleWithoutPlaylistsComesBack()
{
    Prepare();
    const QByteArray plain = "1111111|11:00:00|*|*|*|||Volume|10\n";
    WriteSchedule(plain);
    // Neither of the two names one: nothing but the schedule is kept.
    WriteFile(DataPath(u"to-come/schedule.csv"_s), "1111111|11:00:00|*|*|*|||Volume|20\n");
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    const Result result = RunDeploy(u"--now --undo"_s);
    QCOMPARE(result.errors, QString());
    QCOMPARE(Schedule(), plain);
}

// It is no part of the schedule that was replaced.
void DeployUndo::APlaylistOfAnotherScheduleComesBackAsWell()
{
    Prepare();
    WriteSchedule("1111111|11:00:00|*|*|*|||Volume|10\n");
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    QCOMPARE(Playlist(), NEW_PLAYLIST);
    QCOMPARE(RunDeploy(u"--now --undo"_s).status, 0);
    QCOMPARE(Playlist(), OLD_PLAYLIST);
}

void DeployUndo::WhatRanComesBackWithItsMistakes()
{
    Prepare();
    const QByteArray rejected = OLD + "1111111|12:00|*|*|*|||Volume|10\n";
    WriteSchedule(rejected);
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    QCOMPARE(RunDeploy(u"--now --undo"_s).status, 0);
    QCOMPARE(Schedule(), rejected);
    QCOMPARE(Daemon().Take(2).size(), 4); // at both loads
}

void DeployUndo::EachScheduleHasItsOwnEarlierOne()
{
    Prepare();
    WriteSchedule(OLD, u"summer.csv"_s);
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    QCOMPARE(Client().Call("SetScheduleFile", {u"summer.csv"_s}), u"0"_s);
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(Shown(result.output).last(3), QStringList({u"deployed: DATA/schedule/summer.csv"_s,
                                                        u"the daemon starts with schedule.csv, not with this file"_s,
                                                        u"ozna-schedule deploy --undo brings the earlier one back"_s}));
    QCOMPARE(Client().Call("SetScheduleFile", {u"schedule.csv"_s}), u"0"_s);
    QCOMPARE(RunDeploy(u"--now --undo"_s).status, 0);
    QCOMPARE(Schedule(), OLD);
}

void DeployUndo::WhatCannotBeBroughtBackStaysKept()
{
    Prepare();
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    WriteFile(DataPath(u"deployed.next"_s), "in the way");
    QCOMPARE(RunDeploy(u"--now --undo"_s).status, 3);
    QCOMPARE(Schedule(), NEW);
    QVERIFY(QFile::remove(DataPath(u"deployed.next"_s)));
    QCOMPARE(RunDeploy(u"--now --undo"_s).status, 0);
    QCOMPARE(Schedule(), OLD);
}

OZNA_CASE(DeployUndo, DeployUndo)
#include "tst_DeployUndo.moc"
