#include "DeployTest.h"
#include "ScriptedScheduler.h"
#include "Suite.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

// A deployment that does not come to its end: each file is the old one or the new one, whole.
class DeployCuts final : public DeployTest
{
    Q_OBJECT
private Q_SLOTS:
    void APowerCutAtAnyWrite();
    void APowerCutAtAnyWriteOfAnUndo();
    void ADiskThatIsFullFromAnyWriteOn();
    void AKillAtARandomMoment_data();
    void AKillAtARandomMoment();

private:
    [[nodiscard]] QProcessEnvironment CutAt(int write);
    void CheckFiles() const;

    // The next deployment does all of it, and takes away what the one before has left.
    void CheckNext();
};

namespace
{

constexpr int MOST_WRITES = 500;
constexpr int KILLED = -1;

} // namespace

QProcessEnvironment DeployCuts::CutAt(int write)
{
    QProcessEnvironment environment = ToolEnvironment();
    const QString loaded = environment.value(u"LD_PRELOAD"_s);
    environment.insert(u"LD_PRELOAD"_s, loaded + u':' + QStringLiteral(OZNA_CUT_WRITES));
    environment.insert(u"OZNA_CUT_AT"_s, QString::number(write));
    environment.insert(u"OZNA_CUT_BELOW"_s, DataPath({}));
    environment.insert(u"TMPDIR"_s, QDir::tempPath());
    return environment;
}

void DeployCuts::CheckFiles() const
{
    QVERIFY2(Schedule() == OLD || Schedule() == NEW, Schedule().constData());
    QVERIFY2(Playlist() == OLD_PLAYLIST || Playlist() == NEW_PLAYLIST, Playlist().constData());
}

void DeployCuts::CheckNext()
{
    const bool isDone = Schedule() == NEW && Playlist() == NEW_PLAYLIST;
    const Result result = RunDeploy(u"--now"_s + NewFile());
    QCOMPARE(result.errors, QString());
    QCOMPARE(Schedule(), NEW);
    QCOMPARE(Playlist(), NEW_PLAYLIST);
    if (isDone)
        return;
    const QStringList left = QDir(DataPath({})).entryList({u"deployed*"_s}, QDir::AllEntries);
    QCOMPARE(left, QStringList(u"deployed-before"_s));
    for (const QString& folder : {u"schedule"_s, u"playlists"_s})
        QCOMPARE(QDir(DataPath(folder)).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void DeployCuts::APowerCutAtAnyWrite()
{
    const ScriptedScheduler scheduler(Bus().Connection());
    int write = 1;
    for (; write < MOST_WRITES; ++write)
    {
        Prepare();
        const Result result = RunDeploy(u"--now"_s + NewFile(), CutAt(write));
        CheckFiles();
        if (QTest::currentTestFailed() || result.status == 0)
            break;
        QCOMPARE(result.status, KILLED);
        CheckNext();
        if (QTest::currentTestFailed())
            break;
    }
    QVERIFY2(write > 20 && write < MOST_WRITES, QByteArray::number(write).constData());
    QCOMPARE(Schedule(), NEW);
}

// Whenever it is cut, the same command brings the earlier files back.
void DeployCuts::APowerCutAtAnyWriteOfAnUndo()
{
    const ScriptedScheduler scheduler(Bus().Connection());
    int write = 1;
    for (; write < MOST_WRITES; ++write)
    {
        Prepare();
        QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
        const Result result = RunDeploy(u"--now --undo"_s, CutAt(write));
        CheckFiles();
        if (QTest::currentTestFailed() || result.status == 0)
            break;
        QCOMPARE(result.status, KILLED);
        if (Schedule() == OLD && Playlist() == OLD_PLAYLIST)
            continue;
        QCOMPARE(RunDeploy(u"--now --undo"_s).status, 0);
        QCOMPARE(Schedule(), OLD);
        QCOMPARE(Playlist(), OLD_PLAYLIST);
    }
    QVERIFY2(write > 20 && write < MOST_WRITES, QByteArray::number(write).constData());
    QCOMPARE(Schedule(), OLD);
}

void DeployCuts::ADiskThatIsFullFromAnyWriteOn()
{
    const ScriptedScheduler scheduler(Bus().Connection());
    int write = 1;
    for (; write < MOST_WRITES; ++write)
    {
        Prepare();
        QProcessEnvironment environment = CutAt(write);
        environment.insert(u"OZNA_CUT_BY"_s, u"full"_s);
        const Result result = RunDeploy(u"--now"_s + NewFile(), environment);
        if (result.status == 0)
            break;
        QCOMPARE(result.status, 3);
        QVERIFY2(result.errors.contains(u"No space left on device"_s), qPrintable(result.errors));
        QCOMPARE(Schedule(), OLD);
        QCOMPARE(Playlist(), OLD_PLAYLIST);
    }
    QVERIFY2(write > 10 && write < MOST_WRITES, QByteArray::number(write).constData());
    QCOMPARE(Schedule(), NEW);
}

void DeployCuts::AKillAtARandomMoment_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 4; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void DeployCuts::AKillAtARandomMoment()
{
    QFETCH(quint32, seed);
    constexpr int KILLS = 50;
    const ScriptedScheduler scheduler(Bus().Connection());
    QRandomGenerator random(seed);
    Prepare();
    QElapsedTimer whole;
    whole.start();
    QCOMPARE(RunDeploy(u"--now"_s + NewFile()).status, 0);
    const auto longest_ms = static_cast<int>(whole.elapsed());
    int changed = 0;
    for (int i = 0; i < KILLS; ++i)
    {
        Prepare();
        const Process deploy = Launch(DeployArguments(u"--now"_s + NewFile()), ToolEnvironment());
        const int life_ms = random.bounded(1, longest_ms + 1);
        static_cast<void>(WaitUntil([&] { return deploy->state() == QProcess::NotRunning; }, life_ms));
        deploy->kill();
        QVERIFY(WaitUntil([&] { return deploy->state() == QProcess::NotRunning; }));
        CheckFiles();
        if (QTest::currentTestFailed())
            return;
        changed += Schedule() == NEW ? 1 : 0;
    }
    // Some come to their end, and some do not.
    QVERIFY2(changed < KILLS, QByteArray::number(changed).constData());
    CheckNext();
}

OZNA_CASE(DeployCuts, DeployCuts)
#include "tst_DeployCuts.moc"
