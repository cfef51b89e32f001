#include "DeployTest.h"
#include "ScriptedScheduler.h"
#include "Suite.h"

#include <QDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

// What a deployment leaves as it is, or waits for.
class DeployKept final : public DeployTest
{
    Q_OBJECT
private Q_SLOTS:
    void WhatWasKeptStaysKeptWhenTheDaemonDoesNotLoad_data();
    void WhatWasKeptStaysKeptWhenTheDaemonDoesNotLoad();
    void AFileThatHasItsContentAlreadyIsNotReplaced();
    void WhoCouldReadTheScheduleCanReadTheNewOne();
    void AClockThatIsPutBackIsNotWaitedFor();

private:
    // None where there is no such file.
    [[nodiscard]] ino_t PlaceOf(const QString& name) const
    {
        struct stat status = {};
        return ::stat(QFile::encodeName(DataPath(name)).constData(), &status) == 0 ? status.st_ino : 0;
    }
};

void DeployKept::WhatWasKeptStaysKeptWhenTheDaemonDoesNotLoad_data()
{
    QTest::addColumn<bool>("isKept");
    QTest::newRow("an earlier one") << true;
    QTest::newRow("none") << false;
}

void DeployKept::WhatWasKeptStaysKeptWhenTheDaemonDoesNotLoad()
{
    QFETCH(const bool, isKept);
    Prepare();
    const QString kept = u"deployed-before/schedule.csv/schedule/schedule.csv"_s;
    if (isKept)
    {
        QVERIFY(QDir().mkpath(DataPath(u"deployed-before/schedule.csv/schedule"_s)));
        WriteFile(DataPath(kept), "# kept\n");
    }
    const ScriptedScheduler scheduler(Bus().Connection(), u"org.freedesktop.DBus.Error.ServiceUnknown"_s);
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 3);
    QCOMPARE(Schedule(), OLD);
    QCOMPARE(Content(kept), isKept ? QByteArray("# kept\n") : QByteArray("is not there"));
}

void DeployKept::AFileThatHasItsContentAlreadyIsNotReplaced()
{
    Prepare();
    WritePlaylist(NEW_PLAYLIST, u"day"_s);
    QVERIFY(StartDaemon());
    const ino_t playlist = PlaceOf(u"playlists/day"_s);
    const ino_t schedule = PlaceOf(u"schedule/schedule.csv"_s);
    QVERIFY(playlist != 0 && schedule != 0);
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    QCOMPARE(PlaceOf(u"playlists/day"_s), playlist);
    QVERIFY(PlaceOf(u"schedule/schedule.csv"_s) != schedule);
}

void DeployKept::WhoCouldReadTheScheduleCanReadTheNewOne()
{
    Prepare();
    const auto rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser | QFile::ReadGroup |
                        QFile::WriteGroup;
    const QString schedule = DataPath(u"schedule/schedule.csv"_s);
    QVERIFY(QFile::setPermissions(schedule, rights));
    QVERIFY(StartDaemon());
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    QCOMPARE(Schedule(), NEW);
    QCOMPARE(QFile::permissions(schedule), rights);
}

void DeployKept::AClockThatIsPutBackIsNotWaitedFor()
{
    Prepare();
    WriteSchedule(OLD + "1111111|08:30:00|*|*|*|||Volume|30\n");
    Time().Set(MONDAY, {8, 29, 50});
    QVERIFY(StartDaemon());
    const Process deploy = Launch(DeployArguments(NewFile().trimmed()), ToolEnvironment());
    QVERIFY(WaitUntil([&] { return deploy->readAllStandardOutput().contains("waits until "); }));
    QCOMPARE(Schedule(), OLD + "1111111|08:30:00|*|*|*|||Volume|30\n");
    Time().Set(MONDAY, {7, 0, 0});
    QVERIFY(WaitUntil([&] { return deploy->state() == QProcess::NotRunning; }));
    QCOMPARE(Schedule(), NEW);
}

OZNA_CASE(DeployKept, DeployKept)
#include "tst_DeployKept.moc"
