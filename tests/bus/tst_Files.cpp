#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

#include <QDir>
#include <QStringEncoder>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Lines;
using namespace Qt::StringLiterals;

// A schedule file that is not what it should be leaves the daemon running and reachable.
class Files : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatIsNoRegularFileCountsAsNotFound_data();
    void WhatIsNoRegularFileCountsAsNotFound();
    void WithoutADescriptorTheReasonIsToldAndTheNextLoadWorks();
    void WhatCanBeReadIsScheduled_data();
    void WhatCanBeReadIsScheduled();
    void CarriageReturnsAloneEndNoLine();
    void AFileThatEndsBeforeItsSizeOrFailsIsReadAsFarAsItGoes_data();
    void AFileThatEndsBeforeItsSizeOrFailsIsReadAsFarAsItGoes();
    void ANameTooLongForTheBusCostsItselfOnly();
    void ABadLineCostsItselfOnly();
    void AHugeFileIsLoaded();

private:
    static void AddWholeFiles();
};

namespace
{

const QByteArray ONE_LINE = "1111111|12:00:00|*|*|*|||StopMessage\n";

// With its mark.
QByteArray Encoded(const QByteArray& text, QStringConverter::Encoding encoding)
{
    QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
    return encoder(QString::fromUtf8(text));
}

QByteArray WithEnds(const QByteArray& lines, const QByteArray& end)
{
    return QByteArray(lines).replace("\n", end);
}

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

void Files::WhatIsNoRegularFileCountsAsNotFound_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("reason");
    const auto row = [](const char* name, const char* kind, const QStringList& reason) {
        QTest::newRow(name) << QString::fromLatin1(kind) << reason;
    };
    const QStringList other = OpenError(u"Not a regular file"_s);
    row("missing", "missing", {});
    row("a folder", "folder", OpenError(u"Is a directory"_s));
    row("a pipe without a writer", "pipe", other);
    row("an endless device", "/dev/zero", other);
    row("an empty device", "/dev/null", other);
    row("a terminal", "/dev/tty", other);
    row("a link to itself", "loop", OpenError(u"Too many levels of symbolic links"_s));
    row("a link to nothing", "dangling", {});
    row("no permission", "forbidden", OpenError(u"Permission denied"_s));
}

void Files::WhatIsNoRegularFileCountsAsNotFound()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, reason);
    const QString path = DataPath(u"schedule/schedule.csv"_s);
    if (kind == u"folder"_s)
        QVERIFY(QDir().mkdir(path));
    else if (kind == u"pipe"_s)
        QCOMPARE(::mkfifo(qPrintable(path), 0600), 0);
    else if (kind == u"loop"_s)
        Symlink(path, path);
    else if (kind == u"dangling"_s)
        Symlink(path + u".gone"_s, path);
    else if (kind == u"forbidden"_s)
    {
        WriteSchedule(ONE_LINE);
        QCOMPARE(::chmod(qPrintable(path), 0), 0);
        Daemon().DropPrivileges();
    }
    else if (kind.startsWith(u'/'))
        Symlink(kind, path);

    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(4), CREATED + READY + Loading(path) + NOT_FOUND + reason + STARTED);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
}

void Files::WithoutADescriptorTheReasonIsToldAndTheNextLoadWorks()
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

void Files::WhatCanBeReadIsScheduled_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("tasks");
    QTest::addColumn<int>("rejected");
    QTest::addColumn<int>("cut"); // the line without an end; 0 for none
    QTest::newRow("a last line without its end") << ONE_LINE + ONE_LINE.chopped(1) << 2 << 0 << 2;
    QTest::newRow("a last line that is cut") << ONE_LINE + ONE_LINE.left(16) << 1 << 1 << 2;
    QTest::newRow("a comment without its end") << ONE_LINE + "# the" << 1 << 0 << 2;
    AddWholeFiles();
}

void Files::AddWholeFiles()
{
    const auto row = [](const QByteArray& name, const QByteArray& content, int tasks, int rejected) {
        QTest::newRow(name) << content << tasks << rejected << 0;
    };
    row("empty", {}, 0, 0);
    row("blank lines and comments", "\n \t \n# a comment\n1|2#3\n\r\n", 0, 0);
    row("a lone #", QByteArray("#\n") + ONE_LINE, 1, 1);
    row("lines of another system", WithEnds(ONE_LINE + ONE_LINE, "\r\n"), 2, 0);
    row("lines whose ends were translated twice", WithEnds(ONE_LINE + ONE_LINE, "\r\r\n"), 2, 0);
    row("a byte-order mark", QByteArray("\xef\xbb\xbf") + ONE_LINE, 1, 0);
    for (const char* end : {"\n", "\r\n"})
    {
        const QByteArray name = QByteArray("UTF-16 as a spreadsheet saves it, ") +
                                (qstrlen(end) == 1 ? "line feeds" : "both ends of line") + ", the little end first";
        const QByteArray lines = WithEnds(ONE_LINE + ONE_LINE, end);
        row(name, Encoded(lines, QStringConverter::Utf16LE), 2, 0);
        row(QByteArray(name).replace("little", "big"), Encoded(lines, QStringConverter::Utf16BE), 2, 0);
    }
    row("a NUL in a line", QByteArray("1111111|12:00:00|*|*\0|*|||StopMessage\n", 38) + ONE_LINE, 2, 0);
    row("bytes that are no text", QByteArray("\xfd\x80|\xc0\xff\n") + ONE_LINE, 1, 1);
    row("a block of NUL bytes", QByteArray(100000, '\0') + '\n' + ONE_LINE, 1, 1);
    row("a line of a megabyte", QByteArray(1 << 20, '|') + '\n' + ONE_LINE, 1, 1);
}

void Files::WhatCanBeReadIsScheduled()
{
    QFETCH(QByteArray, content);
    QFETCH(int, tasks);
    QFETCH(int, rejected);
    QFETCH(int, cut);
    WriteSchedule(content);
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().Log().contains(Loaded(tasks).first()));
    const QStringList errors = Daemon().Take(2);
    QCOMPARE(errors.filter(u"2 [Scheduler.cpp] Action ignored"_s).size(), rejected);
    COMPARE_LINES(errors.filter(u"may be cut"_s), cut > 0 ? Cut(cut) : QStringList());
    // No byte in front of the first line shifts its days.
    QCOMPARE(Daemon().Log().filter(u"5 [Action.cpp] Dow:    0x7f (1111111) "_s).size(), tasks);
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
}

void Files::CarriageReturnsAloneEndNoLine()
{
    WriteSchedule(WithEnds(ONE_LINE + ONE_LINE, "\r"));
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(2),
                  QStringList{u"1 [Action.cpp] Unknown task (99)"_s, u"2 [Scheduler.cpp] Action ignored"_s} + Cut(1));
    QVERIFY(Daemon().Log().contains(Loaded(0).first()));
}

void Files::AFileThatEndsBeforeItsSizeOrFailsIsReadAsFarAsItGoes_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QStringList>("errors");
    const QStringList rejected{u"1 [Action.cpp] Wrong action fields (1 found, at least 8 expected)"_s,
                               u"2 [Scheduler.cpp] Action ignored"_s};
    // The kernel gives such a file the size of a page, whatever it holds.
    const QString shorter = u"/sys/devices/system/cpu/online"_s;
    if (QFile::exists(shorter))
        QTest::newRow("one that ends before its size") << shorter << rejected;
    // What is not mapped at the address 0 cannot be read there.
    QTest::newRow("one that fails at once")
        << u"/proc/self/mem"_s << QStringList{u"2 [Scheduler.cpp] Schedule file read error: Input/output error"_s};
}

void Files::AFileThatEndsBeforeItsSizeOrFailsIsReadAsFarAsItGoes()
{
    QFETCH(QString, target);
    QFETCH(QStringList, errors);
    Symlink(target, DataPath(u"schedule/schedule.csv"_s));
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(2), errors);
    QVERIFY(Daemon().Log().contains(Loaded(0).first()));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QCOMPARE(StopDaemon(), 0);
}

void Files::ANameTooLongForTheBusCostsItselfOnly()
{
    // Beyond the daemon's limit, which is below the bus's own: a name beyond that takes longer to read than the gong
    // can wait on a slow machine.
    constexpr int LENGTH = 2'000'000;
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|" + QByteArray(LENGTH, 'x') +
                  "\n1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n");
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    Daemon().Start();
    QVERIFY(WaitUntil([this] { return Daemon().Log().contains(STARTED.last()); }, 10 * WAIT_MS));
    // Reading that much may take longer than until the messages are due.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 52), Qt::UTC));
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {u"sound.PlayFile ss gong.mp3 08:30:00"_s});
    COMPARE_LINES(Daemon().Take(2), {u"1 [tasks/PlayMessage.cpp] PlayFile request error: Argument too long"_s});
    QCOMPARE(StopDaemon(), 0);
}

void Files::ABadLineCostsItselfOnly()
{
    WriteSchedule(ONE_LINE + "1111111|12:00|*|*|*|||StopMessage\n1111111|12:00:00|*|*|*|||EnableAux|1\n" +
                  "1111111|12:00:00|*|*|*|||PlayMessage\n1|2|3\n" + ONE_LINE);
    QVERIFY(StartDaemon());
    const QString ignored = u"2 [Scheduler.cpp] Action ignored"_s;
    COMPARE_LINES(Daemon().Take(2), {u"1 [Action.cpp] Wrong action start time (12:00: hour:minute:second expected)"_s,
                                     ignored, u"1 [Action.cpp] Unknown task (99)"_s, ignored,
                                     u"1 [Action.cpp] Wrong task parameters (PlayMessage)"_s, ignored,
                                     u"1 [Action.cpp] Wrong action fields (3 found, at least 8 expected)"_s, ignored});
    QVERIFY(Daemon().Log().contains(Loaded(2).first()));
}

void Files::AHugeFileIsLoaded()
{
    constexpr int LINES = 20000;
    WriteSchedule(ONE_LINE.repeated(LINES));
    Daemon().Environment().insert(u"OZNA_LOG_LEVEL"_s, u"4"_s);
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().Log().contains(Loaded(LINES).first()));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
}

OZNA_CASE(Files, Files)
#include "tst_Files.moc"
