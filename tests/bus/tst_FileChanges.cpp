#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

#include <csignal>
#include <unistd.h>

using namespace Lines;

// What happens to a file while the daemon reads it, and to the log while the daemon writes it.
class FileChanges : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void AScheduleThatChangesIsReadOn_data();
    void AScheduleThatChangesIsReadOn();
    void APlaylistThatChangesIsReadOn_data();
    void APlaylistThatChangesIsReadOn();
    void AFullDiskBehindTheLogStopsNothing();

private:
    void StartHalted();
    void Change(const QString& kind, const QString& path, const QByteArray& line) const;
};

namespace
{

constexpr int LINES = 20000; // far more than the daemon has read when it halts
constexpr int MORE = 10;
constexpr int CUT = 10000;
const QByteArray TRACK = "song.mp3;60\n";
const QByteArray ONE_LINE = "1111111|12:00:00|*|*|*|||StopMessage\n";
const QStringList CUT_LINE{
    QStringLiteral("1 [Action.cpp] Wrong action fields (1 found, at least 8 expected)"),
    QStringLiteral("2 [Scheduler.cpp] Action ignored"),
    QStringLiteral("2 [Scheduler.cpp] Schedule file may be cut: line 10001 has no line end"),
};

void AddKinds()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("count");
    QTest::newRow("replaced") << QStringLiteral("replaced") << LINES;
    QTest::newRow("removed") << QStringLiteral("removed") << LINES;
    QTest::newRow("cut in the middle of a line") << QStringLiteral("cut") << CUT;
    QTest::newRow("grown") << QStringLiteral("grown") << LINES + MORE;
}

} // namespace

// The daemon, linked so that it halts in the middle of its first file.
void FileChanges::StartHalted()
{
    UseDaemon(QStringLiteral("tests/ozna-scheduler-faulty"));
    Daemon().Environment().insert(QStringLiteral("OZNA_FAULT"), QStringLiteral("halt"));
    Daemon().Environment().insert(QStringLiteral("OZNA_LOG_LEVEL"), QStringLiteral("4"));
    Time().Apply(Daemon().Environment());
    Daemon().Start();
    QVERIFY(Daemon().WaitUntilHalted());
}

void FileChanges::Change(const QString& kind, const QString& path, const QByteArray& line) const
{
    if (kind == QStringLiteral("replaced"))
    {
        WriteFile(DataPath(QStringLiteral("new")), line);
        QCOMPARE(::rename(qPrintable(DataPath(QStringLiteral("new"))), qPrintable(path)), 0);
    }
    else if (kind == QStringLiteral("removed"))
        QVERIFY(QFile::remove(path));
    else if (kind == QStringLiteral("cut"))
        QCOMPARE(::truncate(qPrintable(path), CUT * line.size() + 8), 0);
    else
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::Append));
        QCOMPARE(file.write(line.repeated(MORE)), line.size() * MORE);
    }
}

void FileChanges::AScheduleThatChangesIsReadOn_data()
{
    AddKinds();
}

void FileChanges::AScheduleThatChangesIsReadOn()
{
    QFETCH(QString, kind);
    QFETCH(int, count);
    const QString path = DataPath(QStringLiteral("schedule/schedule.csv"));
    WriteSchedule(ONE_LINE.repeated(LINES));
    StartHalted();
    Change(kind, path, ONE_LINE);
    Daemon().Signal(SIGCONT);

    QVERIFY(Daemon().WaitForLog(STARTED.last()));
    QVERIFY(Daemon().Log().contains(Loaded(count).first()));
    COMPARE_LINES(Daemon().Take(2), kind == QStringLiteral("cut") ? CUT_LINE : QStringList());

    // The file that stands there now is read next.
    WriteSchedule(ONE_LINE, QStringLiteral("new.csv"));
    QCOMPARE(::rename(qPrintable(DataPath(QStringLiteral("schedule/new.csv"))), qPrintable(path)), 0);
    QCOMPARE(Client().Call("Reload"), QStringLiteral("0"));
    QVERIFY(Daemon().Take().contains(Loaded(1).first()));
}

void FileChanges::APlaylistThatChangesIsReadOn_data()
{
    AddKinds();
}

void FileChanges::APlaylistThatChangesIsReadOn()
{
    QFETCH(QString, kind);
    QFETCH(int, count);
    WriteSchedule("1111111|08:30:04|*|*|*|||PlayPlaylist|day\n");
    WritePlaylist(TRACK.repeated(LINES), QStringLiteral("day"));
    StartHalted();
    Change(kind, DataPath(QStringLiteral("playlists/day")), TRACK);
    Daemon().Signal(SIGCONT);

    QVERIFY(Daemon().WaitForLog(STARTED.last()));
    QVERIFY(Daemon().Log().contains(QStringLiteral("4 [tasks/PlayPlaylist.cpp] Playlist loaded (%1 tracks) (from "
                                                   "/com/kestrelix/ozna/audiomanager/audioobj)")
                                        .arg(count)));
    QVERIFY(Daemon().Log().contains(Loaded(1).first()));
    const QString cut =
        QStringLiteral("2 [tasks/PlayPlaylist.cpp] Playlist file may be cut: line 10001 has no line end "
                       "(path=%1) (from /com/kestrelix/ozna/soundmanager/soundobj)")
            .arg(DataPath(QStringLiteral("playlists/day")));
    COMPARE_LINES(Daemon().Take(2), kind == QStringLiteral("cut") ? QStringList{cut} : QStringList());
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 58), Qt::UTC));
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {QStringLiteral("sound.PlayPlaylist ssusb day  1 08:30:04 false")});
}

void FileChanges::AFullDiskBehindTheLogStopsNothing()
{
    WriteSchedule("rejected\n1111111|08:30:04|*|*|*|||Volume|10\n1111111|08:30:05|*|*|*|||Light|5\n");
    Daemon().LogTo(QStringLiteral("/dev/full"));
    Daemon().Start();
    QVERIFY(Bus().WaitForService(SchedulerClient::SERVICE));
    QCOMPARE(Client().Call("Reload"), QStringLiteral("0"));
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 30), Qt::UTC));
    QVERIFY(Device().WaitForCalls(3));
    COMPARE_LINES(Device().Calls(), {QStringLiteral("sound.SetMasterVolume d 10"),
                                     QStringLiteral("light.SetIntensity u 5"), QStringLiteral("light.Switch b true")});
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
    QCOMPARE(StopDaemon(), 0);
}

OZNA_CASE(FileChanges, FileChanges)
#include "tst_FileChanges.moc"
