#include "BusTest.h"
#include "Lines.h"
#include "Rows.h"
#include "Suite.h"

#include <csignal>
#include <unistd.h>

using namespace Lines;
using namespace Qt::StringLiterals;

namespace
{

constexpr int LINES = 20000; // far more than the daemon has read when it halts
constexpr int MORE = 10;
constexpr int CUT = 10000;
const QByteArray TRACK = "song.mp3;60\n";
const QByteArray ONE_LINE = "1111111|12:00:00|*|*|*|||StopMessage\n";
const QStringList CUT_LINE{
    u"1 [Action.cpp] Wrong action fields (1 found, at least 8 expected)"_s,
    u"2 [Scheduler.cpp] Action ignored"_s,
    u"2 [Scheduler.cpp] Schedule file may be cut: line 10001 has no line end"_s,
};

struct FileChange
{
    const char* name;
    int count; // of lines that are read then
};

constexpr std::array CHANGES{FileChange{"replaced", LINES}, FileChange{"removed", LINES},
                             FileChange{"cut in the middle of a line", CUT}, FileChange{"grown", LINES + MORE}};

} // namespace

// What happens to a file while the daemon reads it, and to the log while the daemon writes it.
class FileChanges : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void AScheduleThatChangesIsReadOn_data() { AddRows(CHANGES); }
    void AScheduleThatChangesIsReadOn();
    void APlaylistThatChangesIsReadOn_data() { AddRows(CHANGES); }
    void APlaylistThatChangesIsReadOn();
    void AFullDiskBehindTheLogStopsNothing();

private:
    void StartHalted();
    void Change(QByteArrayView kind, const QString& path, const QByteArray& line) const;
};

// The daemon, linked so that it halts in the middle of its first file.
void FileChanges::StartHalted()
{
    UseDaemon(u"tests/ozna-scheduler-faulty"_s);
    Daemon().Environment().insert(u"OZNA_FAULT"_s, u"halt"_s);
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    Time().Apply(Daemon().Environment());
    Daemon().Start();
    QVERIFY(Daemon().WaitUntilHalted());
}

void FileChanges::Change(QByteArrayView kind, const QString& path, const QByteArray& line) const
{
    if (kind == "replaced")
    {
        WriteFile(DataPath(u"new"_s), line);
        QCOMPARE(::rename(qPrintable(DataPath(u"new"_s)), qPrintable(path)), 0);
    }
    else if (kind == "removed")
        QVERIFY(QFile::remove(path));
    else if (kind.startsWith("cut"))
        QCOMPARE(::truncate(qPrintable(path), CUT * line.size() + 8), 0);
    else
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::Append));
        QCOMPARE(file.write(line.repeated(MORE)), line.size() * MORE);
    }
}

void FileChanges::AScheduleThatChangesIsReadOn()
{
    const auto& [name, count] = Row<FileChange>();
    const QString path = DataPath(u"schedule/schedule.csv"_s);
    WriteSchedule(ONE_LINE.repeated(LINES));
    StartHalted();
    Change(name, path, ONE_LINE);
    Daemon().Signal(SIGCONT);

    QVERIFY(Daemon().WaitForLog(STARTED.last()));
    QVERIFY(Daemon().Log().contains(Loaded(count).first()));
    COMPARE_LINES(Daemon().Take(2), count == CUT ? CUT_LINE : QStringList());

    // The file that stands there now is read next.
    WriteSchedule(ONE_LINE, u"new.csv"_s);
    QCOMPARE(::rename(qPrintable(DataPath(u"schedule/new.csv"_s)), qPrintable(path)), 0);
    QCOMPARE(Client().Call("Reload"), u"0"_s);
    QVERIFY(Daemon().Take().contains(Loaded(1).first()));
}

void FileChanges::APlaylistThatChangesIsReadOn()
{
    const auto& [name, count] = Row<FileChange>();
    WriteSchedule("1111111|08:30:04|*|*|*|||PlayPlaylist|day\n");
    WritePlaylist(TRACK.repeated(LINES), u"day"_s);
    StartHalted();
    Change(name, DataPath(u"playlists/day"_s), TRACK);
    Daemon().Signal(SIGCONT);

    QVERIFY(Daemon().WaitForLog(STARTED.last()));
    QVERIFY(Daemon().Log().contains(u"4 [tasks/PlayPlaylist.cpp] Playlist loaded (%1 tracks) (from "
                                    "/com/kestrelix/ozna/audiomanager/audioobj)"_s.arg(count)));
    QVERIFY(Daemon().Log().contains(Loaded(1).first()));
    const QString cut =
        u"2 [tasks/PlayPlaylist.cpp] Playlist file may be cut: line 10001 has no line end "
        "(path=%1) (from /com/kestrelix/ozna/soundmanager/soundobj)"_s.arg(DataPath(u"playlists/day"_s));
    COMPARE_LINES(Daemon().Take(2), count == CUT ? QStringList{cut} : QStringList());
    Time().Set(MONDAY, {8, 29, 58});
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {u"sound.PlayPlaylist ssusb day  1 08:30:04 false"_s});
}

void FileChanges::AFullDiskBehindTheLogStopsNothing()
{
    WriteSchedule("rejected\n1111111|08:30:04|*|*|*|||Volume|10\n1111111|08:30:05|*|*|*|||Light|5\n");
    Daemon().LogTo(u"/dev/full"_s);
    Daemon().Start();
    QVERIFY(Bus().WaitForService(SchedulerClient::SERVICE));
    QCOMPARE(Client().Call("Reload"), u"0"_s);
    Time().Set(MONDAY, {8, 30});
    QVERIFY(Device().WaitForCalls(3));
    COMPARE_LINES(Device().Calls(),
                  {u"sound.SetMasterVolume d 10"_s, u"light.SetIntensity u 5"_s, u"light.Switch b true"_s});
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QCOMPARE(StopDaemon(), 0);
}

OZNA_CASE(FileChanges, FileChanges)
#include "tst_FileChanges.moc"
