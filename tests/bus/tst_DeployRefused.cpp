#include "DeployTest.h"
#include "ScriptedScheduler.h"
#include "Suite.h"

#include <optional>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// What must not be deployed, or not over what stands there.
class DeployRefused final : public DeployTest
{
    Q_OBJECT
private Q_SLOTS:
    void ScheduleThatIsNone_data();
    void ScheduleThatIsNone();
    void AnotherDataFolder();
    void ALink();
    void WhileAnotherDeploymentIsUnderWay();
    void OverWhatHasBeenChangedByHand();
    void OverAnotherFileThanTheDaemonRuns();
    void OverWhatAnotherDaemonRuns();

private:
    // Runs a deployment that waits for a start of the running schedule, does that meanwhile, and gives its errors.
    [[nodiscard]] QString DuringTheWait(const std::function<void()>& what);
};

void DeployRefused::ScheduleThatIsNone_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("error");
    QTest::newRow("no line")
        << QByteArray() << u"schedule.csv"_s
        << u"DATA/to-come/schedule.csv: the daemon takes no line of it; disable switches the daemon off"_s;
    QTest::newRow("not there") << NEW << u"none.csv"_s
                               << u"DATA/to-come/none.csv: is not a file: deploy takes no pipe and no \"-\""_s;
    QTest::newRow("a folder") << NEW << u"playlists"_s
                              << u"DATA/to-come/playlists: is not a file: deploy takes no pipe and no \"-\""_s;
    QTest::newRow("a playlist outside") << QByteArray("1111111|12:00:00|*|*|*|||PlayPlaylist|../playlists/day\n")
                                        << u"schedule.csv"_s
                                        << u"DATA/to-come/schedule.csv:1: the playlist ../playlists/day lies outside "
                                           "the folder of the playlists"_s;
}

void DeployRefused::ScheduleThatIsNone()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, file);
    QFETCH(QString, error);
    Prepare();
    WriteFile(DataPath(u"to-come/schedule.csv"_s), content);
    QVERIFY(StartDaemon());
    const Result result = RunDeploy(u"--now "_s + DataPath(u"to-come/"_s + file));
    QCOMPARE(result.status, 3);
    QCOMPARE(Shown(result.errors), QStringList(u"ozna-schedule: "_s + error));
    QCOMPARE(Schedule(), OLD);
}

void DeployRefused::AnotherDataFolder()
{
    Prepare();
    QVERIFY(StartDaemon());
    const Result result = Run(u"deploy --now --data "_s + DataPath(u"tmp"_s) + NewFile());
    QCOMPARE(result.status, 3);
    QCOMPARE(Shown(result.errors),
             QStringList(u"ozna-schedule: DATA/tmp: is no data folder, as it has no folder \"schedule\""_s));
    QVERIFY(!QFile::exists(DataPath(u"tmp/schedule"_s)));
}

void DeployRefused::ALink()
{
    Prepare();
    QVERIFY(StartDaemon());
    QVERIFY(QFile::rename(DataPath(u"schedule/schedule.csv"_s), DataPath(u"schedule/winter.csv"_s)));
    QVERIFY(QFile::link(DataPath(u"schedule/winter.csv"_s), DataPath(u"schedule/schedule.csv"_s)));
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(result.status, 3);
    QCOMPARE(Schedule(), OLD);
}

void DeployRefused::WhileAnotherDeploymentIsUnderWay()
{
    Prepare();
    QVERIFY(StartDaemon());
    const int folder = ::open(QFile::encodeName(DataPath({})).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    QCOMPARE(::flock(folder, LOCK_EX), 0);
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(::close(folder), 0);
    QCOMPARE(result.status, 3);
    QCOMPARE(Shown(result.errors), QStringList(u"ozna-schedule: DATA: another deployment is under way"_s));
    QCOMPARE(Schedule(), OLD);
}

QString DeployRefused::DuringTheWait(const std::function<void()>& what)
{
    const Process deploy = Launch(DeployArguments(NewFile().trimmed()), ToolEnvironment());
    if (!WaitUntil([&] { return deploy->readAllStandardOutput().contains("waits until "); }))
        return u"it does not wait"_s;
    what();
    Time().Set(MONDAY, {8, 30, 16});
    if (!WaitUntil([&] { return deploy->state() == QProcess::NotRunning; }) || deploy->exitCode() != 3)
        return u"it does not fail"_s;
    return Shown(QString::fromUtf8(deploy->readAllStandardError())).join(u'\n');
}

void DeployRefused::OverWhatHasBeenChangedByHand()
{
    Prepare();
    const QByteArray running = OLD + "1111111|08:30:00|*|*|*|||Volume|30\n";
    WriteSchedule(running);
    QVERIFY(StartDaemon());
    QCOMPARE(
        DuringTheWait([&] { WriteSchedule(running + "# by hand\n"); }),
        u"ozna-schedule: DATA/schedule/schedule.csv or a playlist of it has changed since it was compared: nothing "
        "was deployed"_s);
    QCOMPARE(Schedule(), running + "# by hand\n");
}

void DeployRefused::OverAnotherFileThanTheDaemonRuns()
{
    Prepare();
    const QByteArray running = OLD + "1111111|08:30:00|*|*|*|||Volume|30\n";
    WriteSchedule(running);
    WriteSchedule(OLD, u"summer.csv"_s);
    QVERIFY(StartDaemon());
    QCOMPARE(DuringTheWait([&] { static_cast<void>(Client().Call("SetScheduleFile", {u"summer.csv"_s})); }),
             u"ozna-schedule: the daemon was started anew or runs another file now: nothing was deployed"_s);
    QCOMPARE(Schedule(), running);
}

void DeployRefused::OverWhatAnotherDaemonRuns()
{
    Prepare();
    const QByteArray running = OLD + "1111111|08:30:00|*|*|*|||Volume|30\n";
    WriteSchedule(running);
    QVERIFY(StartDaemon());
    std::optional<ScriptedScheduler> other;
    QCOMPARE(DuringTheWait([&] {
                 QCOMPARE(StopDaemon(), 0);
                 other.emplace(Bus().Connection());
             }),
             u"ozna-schedule: the daemon was started anew or runs another file now: nothing was deployed"_s);
    QCOMPARE(Schedule(), running);
}

OZNA_CASE(DeployRefused, DeployRefused)
#include "tst_DeployRefused.moc"
