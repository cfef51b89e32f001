#include "BusTest.h"
#include "Lines.h"
#include "Rows.h"
#include "Suite.h"

#include <QStringEncoder>

using namespace Lines;
using namespace Qt::StringLiterals;

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

struct Content
{
    QByteArray name;
    QByteArray bytes;
    int tasks;
    int rejected = 0;
    int cut = 0; // the line without an end; 0 for none
};

const QList<Content>& Contents()
{
    const QByteArray two = ONE_LINE + ONE_LINE;
    const QByteArray both = WithEnds(two, "\r\n");
    const QByteArray sheet = "UTF-16 as a spreadsheet saves it, ";
    constexpr auto LITTLE = QStringConverter::Utf16LE;
    constexpr auto BIG = QStringConverter::Utf16BE;
    static const QList<Content> contents{
        {"a last line without its end", two.chopped(1), 2, 0, 2},
        {"a last line that is cut", ONE_LINE + ONE_LINE.left(16), 1, 1, 2},
        {"a comment without its end", ONE_LINE + "# the", 1, 0, 2},
        {"empty", {}, 0},
        {"blank lines and comments", "\n \t \n# a comment\n1|2#3\n\r\n", 0},
        {"a lone #", "#\n" + ONE_LINE, 1, 1},
        {"lines of another system", both, 2},
        {"lines whose ends were translated twice", WithEnds(two, "\r\r\n"), 2},
        {"a byte-order mark", "\xef\xbb\xbf" + ONE_LINE, 1},
        {sheet + "line feeds, the little end first", Encoded(two, LITTLE), 2},
        {sheet + "line feeds, the big end first", Encoded(two, BIG), 2},
        {sheet + "both ends of line, the little end first", Encoded(both, LITTLE), 2},
        {sheet + "both ends of line, the big end first", Encoded(both, BIG), 2},
        {"a NUL in a line", QByteArray("1111111|12:00:00|*|*\0|*|||StopMessage\n", 38) + ONE_LINE, 2},
        {"bytes that are no text", "\xfd\x80|\xc0\xff\n" + ONE_LINE, 1, 1},
        {"a block of NUL bytes", QByteArray(100000, '\0') + '\n' + ONE_LINE, 1, 1},
        {"a line of a megabyte", QByteArray(1 << 20, '|') + '\n' + ONE_LINE, 1, 1},
    };
    return contents;
}

} // namespace

// Whatever a schedule file holds, the daemon runs and can be reached.
class Files : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatCanBeReadIsScheduled_data() { AddRows(Contents()); }
    void WhatCanBeReadIsScheduled();
    void CarriageReturnsAloneEndNoLine();
    void ANameTooLongForTheBusCostsItselfOnly();
    void ABadLineCostsItselfOnly();
    void AHugeFileIsLoaded();
};

void Files::WhatCanBeReadIsScheduled()
{
    const auto& [name, content, tasks, rejected, cut] = Row<Content>();
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
    Time().Set(MONDAY, {8, 29, 52});
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
