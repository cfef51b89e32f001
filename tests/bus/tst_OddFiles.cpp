#include "BusTest.h"
#include "Lines.h"
#include "Rows.h"
#include "Suite.h"

#include <QDir>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Lines;
using namespace Qt::StringLiterals;

namespace
{

const QByteArray ONE_LINE = "1111111|12:00:00|*|*|*|||StopMessage\n";

struct OddFile
{
    const char* name;
    QByteArrayView kind; // what stands in the place of the file
    const char* reason;  // why it is not opened; null: nothing is there
};

constexpr const char* NOT_REGULAR = "Not a regular file";
constexpr std::array ODD_FILES{
    OddFile{"missing", "missing", nullptr},
    OddFile{"a folder", "folder", "Is a directory"},
    OddFile{"a pipe without a writer", "pipe", NOT_REGULAR},
    OddFile{"an endless device", "/dev/zero", NOT_REGULAR},
    OddFile{"an empty device", "/dev/null", NOT_REGULAR},
    OddFile{"a terminal", "/dev/tty", NOT_REGULAR},
    OddFile{"a link to itself", "loop", "Too many levels of symbolic links"},
    OddFile{"a link to nothing", "dangling", nullptr},
    OddFile{"no permission", "forbidden", "Permission denied"},
};

// How many descriptors a process may have.
class DescriptorLimit final
{
public:
    explicit DescriptorLimit(qint64 pid)
        : m_pid(static_cast<pid_t>(pid))
    {
    }

    // False when the process does not exist, or is somebody else's.
    [[nodiscard]] bool Set(int count) const
    {
        rlimit limit{};
        if (::prlimit(m_pid, RLIMIT_NOFILE, nullptr, &limit) != 0)
            return false;
        limit.rlim_cur = static_cast<rlim_t>(count);
        return ::prlimit(m_pid, RLIMIT_NOFILE, &limit, nullptr) == 0;
    }

    // The number that the next descriptor gets.
    [[nodiscard]] int LeastFree() const
    {
        int number = 0;
        while (QFileInfo(u"/proc/%1/fd/%2"_s.arg(m_pid).arg(number)).isSymLink())
            ++number;
        return number;
    }

private:
    const pid_t m_pid;
};

void Symlink(const QString& target, const QString& link)
{
    if (::symlink(qPrintable(target), qPrintable(link)) != 0)
        qFatal("cannot link %s", qPrintable(link));
}

} // namespace

// A schedule file that is not what it should be leaves the daemon running and reachable.
class OddFiles : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatIsNoRegularFileCountsAsNotFound_data() { AddRows(ODD_FILES); }
    void WhatIsNoRegularFileCountsAsNotFound();
    void WithoutADescriptorTheReasonIsToldAndTheNextLoadWorks();
    void AFileThatEndsBeforeItsSizeIsReadAsFarAsItGoes();
    void AFileThatFailsAtOnceIsReadAsFarAsItGoes();

private:
    void LoadLink(const QString& target, const QStringList& errors);
};

void OddFiles::WhatIsNoRegularFileCountsAsNotFound()
{
    const auto& [name, kind, reason] = Row<OddFile>();
    const QString path = DataPath(u"schedule/schedule.csv"_s);
    if (kind == "folder")
        QVERIFY(QDir().mkdir(path));
    else if (kind == "pipe")
        QCOMPARE(::mkfifo(qPrintable(path), 0600), 0);
    else if (kind == "loop")
        Symlink(path, path);
    else if (kind == "dangling")
        Symlink(path + u".gone"_s, path);
    else if (kind == "forbidden")
    {
        WriteSchedule(ONE_LINE);
        QCOMPARE(::chmod(qPrintable(path), 0), 0);
        Daemon().DropPrivileges();
    }
    else if (kind.startsWith('/'))
        Symlink(QString::fromLatin1(kind), path);

    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(4), CREATED + READY + Loading(path) + NOT_FOUND +
                                        (reason ? OpenError(QString::fromLatin1(reason)) : QStringList()) + STARTED);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
}

void OddFiles::WithoutADescriptorTheReasonIsToldAndTheNextLoadWorks()
{
    // The sanitizer needs descriptors for its own checks, and takes sound objects for broken ones without them.
    if (IsSanitized())
        return;
    const QString path = DataPath(u"schedule/schedule.csv"_s);
    const QString playlist = DataPath(u"playlists/day"_s);
    const QString told = u"Too many open files"_s;
    WriteSchedule(ONE_LINE + "1111111|12:00:00|*|*|*|||PlayPlaylist|day\n");
    WritePlaylist("first.mp3;60\n", u"day"_s);
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().Log().contains(Loaded(2).first()));
    static_cast<void>(Daemon().Take());

    const DescriptorLimit limit(DaemonPid());
    QVERIFY(limit.Set(limit.LeastFree()));
    QCOMPARE(Client().Call("Reload"), u"0"_s);
    COMPARE_LINES(Daemon().Take(4), RESTARTING + STOPPED + Loading(path) + NOT_FOUND + OpenError(told) + STARTED);

    // The schedule's own is the last one.
    QVERIFY(limit.Set(limit.LeastFree() + 1));
    QCOMPARE(Client().Call("Reload"), u"0"_s);
    const auto record = [](int level, const QString& text) {
        return u"%1 [tasks/PlayPlaylist.cpp] %2 (from /com/kestrelix/ozna/soundmanager/soundobj)"_s.arg(level).arg(
            text);
    };
    const QStringList errors{record(1, u"Playlist file open failed (path=%1)"_s.arg(playlist)),
                             record(1, u"Playlist file (path=%1) exists: why I couldn't open it ?"_s.arg(playlist)),
                             record(2, u"Playlist file open error: "_s + told),
                             u"1 [tasks/PlayPlaylist.cpp] TASK CREATION FAILED"_s,
                             u"2 [Scheduler.cpp] Action ignored"_s};
    COMPARE_LINES(Daemon().Take(2), errors);
    QVERIFY(Daemon().Log().contains(Loaded(1).first()));

    QVERIFY(limit.Set(limit.LeastFree() + 2));
    QCOMPARE(Client().Call("Reload"), u"0"_s);
    QCOMPARE(Daemon().Take(4).filter(Loaded(2).first()).size(), 1);
}

// The kernel gives such a file the size of a page, whatever it holds.
void OddFiles::AFileThatEndsBeforeItsSizeIsReadAsFarAsItGoes()
{
    const QString shorter = u"/sys/devices/system/cpu/online"_s;
    if (QFile::exists(shorter))
        LoadLink(shorter, {u"1 [Action.cpp] Wrong action fields (1 found, at least 8 expected)"_s,
                           u"2 [Scheduler.cpp] Action ignored"_s});
}

// What is not mapped at the address 0 cannot be read there.
void OddFiles::AFileThatFailsAtOnceIsReadAsFarAsItGoes()
{
    LoadLink(u"/proc/self/mem"_s, {u"2 [Scheduler.cpp] Schedule file read error: Input/output error"_s});
}

void OddFiles::LoadLink(const QString& target, const QStringList& errors)
{
    Symlink(target, DataPath(u"schedule/schedule.csv"_s));
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(2), errors);
    QVERIFY(Daemon().Log().contains(Loaded(0).first()));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QCOMPARE(StopDaemon(), 0);
}

OZNA_CASE(OddFiles, OddFiles)
#include "tst_OddFiles.moc"
