#include "BusTest.h"
#include "Lines.h"

#include <QDir>
#include <QStringEncoder>

#include <sys/stat.h>
#include <unistd.h>

using namespace Lines;

// A schedule file that is not what it should be leaves the daemon running and reachable.
class Files : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatIsNoRegularFileCountsAsNotFound_data();
    void WhatIsNoRegularFileCountsAsNotFound();
    void WhatCanBeReadIsScheduled_data();
    void WhatCanBeReadIsScheduled();
    void AFileThatEndsBeforeItsSizeOrFailsIsReadAsFarAsItGoes_data();
    void AFileThatEndsBeforeItsSizeOrFailsIsReadAsFarAsItGoes();
    void ANameTooLongForTheBusCostsItselfOnly();
    void ABadLineCostsItselfOnly();
    void AHugeFileIsLoaded();
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

void Symlink(const QString& target, const QString& link)
{
    if (::symlink(qPrintable(target), qPrintable(link)) != 0)
        qFatal("cannot link %s", qPrintable(link));
}

} // namespace

void Files::WhatIsNoRegularFileCountsAsNotFound_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("missing") << QStringLiteral("missing");
    QTest::newRow("a folder") << QStringLiteral("folder");
    QTest::newRow("a pipe without a writer") << QStringLiteral("pipe");
    QTest::newRow("an endless device") << QStringLiteral("/dev/zero");
    QTest::newRow("an empty device") << QStringLiteral("/dev/null");
    QTest::newRow("a terminal") << QStringLiteral("/dev/tty");
    QTest::newRow("a link to itself") << QStringLiteral("loop");
    QTest::newRow("a link to nothing") << QStringLiteral("dangling");
    QTest::newRow("no permission") << QStringLiteral("forbidden");
}

void Files::WhatIsNoRegularFileCountsAsNotFound()
{
    QFETCH(QString, kind);
    const QString path = DataPath(QStringLiteral("schedule/schedule.csv"));
    if (kind == QStringLiteral("folder"))
        QVERIFY(QDir().mkdir(path));
    else if (kind == QStringLiteral("pipe"))
        QCOMPARE(::mkfifo(qPrintable(path), 0600), 0);
    else if (kind == QStringLiteral("loop"))
        Symlink(path, path);
    else if (kind == QStringLiteral("dangling"))
        Symlink(path + QStringLiteral(".gone"), path);
    else if (kind == QStringLiteral("forbidden"))
    {
        WriteSchedule(ONE_LINE);
        QCOMPARE(::chmod(qPrintable(path), 0), 0);
        Daemon().DropPrivileges();
    }
    else if (kind.startsWith(QLatin1Char('/')))
        Symlink(kind, path);

    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(4), CREATED + READY + Loading(path) + NOT_FOUND + STARTED);
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
}

void Files::WhatCanBeReadIsScheduled_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("tasks");
    QTest::addColumn<int>("rejected");
    QTest::newRow("empty") << QByteArray() << 0 << 0;
    QTest::newRow("blank lines and comments") << QByteArray("\n \t \n# a comment\n1|2#3\n\r\n") << 0 << 0;
    QTest::newRow("a lone #") << QByteArray("#\n") + ONE_LINE << 1 << 1;
    QTest::newRow("a last line without its end") << ONE_LINE + ONE_LINE.chopped(1) << 2 << 0;
    QTest::newRow("a last line that is cut") << ONE_LINE + ONE_LINE.left(16) << 1 << 1;
    QTest::newRow("lines of another system") << WithEnds(ONE_LINE + ONE_LINE, "\r\n") << 2 << 0;
    QTest::newRow("lines that end with carriage returns") << WithEnds(ONE_LINE + ONE_LINE, "\r") << 2 << 0;
    QTest::newRow("lines whose ends were translated twice") << WithEnds(ONE_LINE + ONE_LINE, "\r\r\n") << 2 << 0;
    QTest::newRow("a byte-order mark") << QByteArray("\xef\xbb\xbf") + ONE_LINE << 1 << 0;
    for (const char* end : {"\n", "\r\n"})
    {
        const QByteArray name = QByteArray("UTF-16 as a spreadsheet saves it, ") +
                                (qstrlen(end) == 1 ? "line feeds" : "both ends of line") + ", the little end first";
        const QByteArray lines = WithEnds(ONE_LINE + ONE_LINE, end);
        QTest::newRow(name) << Encoded(lines, QStringConverter::Utf16LE) << 2 << 0;
        QTest::newRow(QByteArray(name).replace("little", "big")) << Encoded(lines, QStringConverter::Utf16BE) << 2 << 0;
    }
    QTest::newRow("a NUL in a line") << QByteArray("1111111|12:00:00|*|*\0|*|||StopMessage\n", 38) + ONE_LINE << 2 << 0;
    QTest::newRow("bytes that are no text") << QByteArray("\xfd\x80|\xc0\xff\n") + ONE_LINE << 1 << 1;
    QTest::newRow("a block of NUL bytes") << QByteArray(100000, '\0') + '\n' + ONE_LINE << 1 << 1;
    QTest::newRow("a line of a megabyte") << QByteArray(1 << 20, '|') + '\n' + ONE_LINE << 1 << 1;
}

void Files::WhatCanBeReadIsScheduled()
{
    QFETCH(QByteArray, content);
    QFETCH(int, tasks);
    QFETCH(int, rejected);
    WriteSchedule(content);
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().Log().contains(Loaded(tasks).first()));
    const QStringList ignored = Daemon().Take(2).filter(QStringLiteral("2 [Scheduler.cpp] Action ignored"));
    QCOMPARE(ignored.size(), rejected);
    // No byte in front of the first line shifts its days.
    QCOMPARE(Daemon().Log().filter(QStringLiteral("5 [Action.cpp] Dow:    0x7f (1111111) ")).size(), tasks);
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
}

void Files::AFileThatEndsBeforeItsSizeOrFailsIsReadAsFarAsItGoes_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QStringList>("errors");
    const QStringList rejected{QStringLiteral("1 [Action.cpp] Wrong action fields (1 found, at least 8 expected)"),
                               QStringLiteral("2 [Scheduler.cpp] Action ignored")};
    // The kernel gives such a file the size of a page, whatever it holds.
    const QString shorter = QStringLiteral("/sys/devices/system/cpu/online");
    if (QFile::exists(shorter))
        QTest::newRow("one that ends before its size") << shorter << rejected;
    // What is not mapped at the address 0 cannot be read there.
    QTest::newRow("one that fails at once")
        << QStringLiteral("/proc/self/mem")
        << QStringList{QStringLiteral("2 [Scheduler.cpp] Schedule file read error: Input/output error")};
}

void Files::AFileThatEndsBeforeItsSizeOrFailsIsReadAsFarAsItGoes()
{
    QFETCH(QString, target);
    QFETCH(QStringList, errors);
    Symlink(target, DataPath(QStringLiteral("schedule/schedule.csv")));
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(2), errors);
    QVERIFY(Daemon().Log().contains(Loaded(0).first()));
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
    QCOMPARE(StopDaemon(), 0);
}

void Files::ANameTooLongForTheBusCostsItselfOnly()
{
    // Beyond the daemon's limit, which is below the bus's own: a name beyond that takes longer to read than the gong
    // can wait on a slow machine.
    constexpr int LENGTH = 2'000'000;
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|" + QByteArray(LENGTH, 'x') +
                  "\n1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n");
    Daemon().Environment().insert(QStringLiteral("OZNA_LOG_LEVEL"), QStringLiteral("4"));
    Daemon().Start();
    QVERIFY(WaitUntil([this] { return Daemon().Log().contains(STARTED.last()); }, 10 * WAIT_MS));
    // Reading that much may take longer than until the messages are due.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 52), Qt::UTC));
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {QStringLiteral("sound.PlayFile ss gong.mp3 08:30:00")});
    COMPARE_LINES(Daemon().Take(2),
                  {QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile request error: Argument too long")});
    QCOMPARE(StopDaemon(), 0);
}

void Files::ABadLineCostsItselfOnly()
{
    WriteSchedule(ONE_LINE + "1111111|12:00|*|*|*|||StopMessage\n1111111|12:00:00|*|*|*|||EnableAux|1\n" +
                  "1111111|12:00:00|*|*|*|||PlayMessage\n1|2|3\n" + ONE_LINE);
    QVERIFY(StartDaemon());
    const QString ignored = QStringLiteral("2 [Scheduler.cpp] Action ignored");
    COMPARE_LINES(Daemon().Take(2),
                  {QStringLiteral("1 [Action.cpp] Wrong action start time (12:00: hour:minute:second expected)"),
                   ignored, QStringLiteral("1 [Action.cpp] Unknown task (99)"), ignored,
                   QStringLiteral("1 [Action.cpp] Wrong task parameters (PlayMessage)"), ignored,
                   QStringLiteral("1 [Action.cpp] Wrong action fields (3 found, at least 8 expected)"), ignored});
    QVERIFY(Daemon().Log().contains(Loaded(2).first()));
}

void Files::AHugeFileIsLoaded()
{
    constexpr int LINES = 20000;
    WriteSchedule(ONE_LINE.repeated(LINES));
    Daemon().Environment().insert(QStringLiteral("OZNA_LOG_LEVEL"), QStringLiteral("4"));
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().Log().contains(Loaded(LINES).first()));
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
}

QTEST_GUILESS_MAIN(Files)
#include "tst_Files.moc"
