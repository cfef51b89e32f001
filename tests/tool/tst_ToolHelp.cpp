#include "CommandCall.h"
#include "Suite.h"
#include "ToolHelp.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

// What all commands have in common: help, refusals, colours.
class tst_ToolHelp final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void EveryHelpFitsATerminal();
    void TheVersionIsTold();
    void WhatIsUnknownIsRefused_data();
    void WhatIsUnknownIsRefused();
    void ColoursAreForTerminalsAlone();

private:
    // Runs a shell command on a terminal of its own; what it writes there, standard output and error.
    [[nodiscard]] CommandCall::Result RunOnTerminal(const QString& command) const;

    CommandCall m_call;
};

namespace
{

const QString TOOL = QStringLiteral(OZNA_TOOL);
const QString HELP = u"--help"_s;
const QString ESCAPE = u"\x1b["_s;
constexpr int HEIGHT = 24;
constexpr int WIDTH = 80;

} // namespace

CommandCall::Result tst_ToolHelp::RunOnTerminal(const QString& command) const
{
    return m_call.RunProgram(u"script"_s, {u"-qec"_s, command, u"/dev/null"_s});
}

void tst_ToolHelp::EveryHelpFitsATerminal()
{
    const QStringList commands = ToolHelp::Commands(m_call);
    QVERIFY(commands.size() >= 5);
    QList<QStringList> calls{{HELP}, {u"-h"_s}};
    for (const QString& command : commands)
        calls.append({{command, HELP}, {command, u"-h"_s}});
    for (const QStringList& arguments : calls)
    {
        const CommandCall::Result result = m_call.Run(arguments);
        const QString told = arguments.join(u' ');
        QVERIFY2(result.status == 0 && result.errors.isEmpty(), qPrintable(told));
        QVERIFY2(result.output.startsWith("Usage: ozna-schedule "_L1), qPrintable(told));
        const QStringList lines = result.output.split(u'\n');
        QVERIFY2(lines.size() - 1 <= HEIGHT, qPrintable(told));
        for (const QString& line : lines)
            QVERIFY2(line.size() <= WIDTH, qPrintable(told + u'\n' + line));
    }
}

void tst_ToolHelp::TheVersionIsTold()
{
    const CommandCall::Result result = m_call.Run({u"--version"_s});
    QCOMPARE(result.status, 0);
    QVERIFY2(QRegularExpression(u"^ozna-schedule \\d+\\.\\d+\\.\\d+\\n$"_s).match(result.output).hasMatch(),
             qPrintable(result.output));
}

void tst_ToolHelp::WhatIsUnknownIsRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");

    const auto row = [](const char* arguments, const char* message) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts)
                                 << u"ozna-schedule: %1\n"_s.arg(QLatin1String(message));
    };
    row("", "a command is missing\nsee ozna-schedule --help");
    row("play s.csv", "no command \"play\"\nsee ozna-schedule --help");
    row("next", "FILE is missing\nsee ozna-schedule next --help");
    row("next s.csv t.csv", "unexpected argument: t.csv\nsee ozna-schedule next --help");
    row("diff s.csv", "NEW is missing\nsee ozna-schedule diff --help");
    row("explain", "LINE... is missing\nsee ozna-schedule explain --help");
    row("next s.csv --loud", "Unknown option 'loud'.\nsee ozna-schedule next --help");
    row("next s.csv -n many", "-n: a number from 1 to 10000 is expected, not \"many\"");
    row("dst s.csv --years 0", "--years: a number from 1 to 100 is expected, not \"0\"");
    row("next s.csv --from 2024-13-01",
        "--from: a moment like 2024-05-15 or 2024-05-15T08:30:00 is expected, not \"2024-13-01\"");
    row("next s.csv --tz Europe/Nowhere", "--tz: no time zone \"Europe/Nowhere\" on this system");
    row("next s.csv --tz zone.tab", "--tz: no time zone \"zone.tab\" on this system");
    row("next s.csv --tz ../zoneinfo/UTC", "--tz: no time zone \"../zoneinfo/UTC\" on this system");
    row("next missing.csv", "missing.csv: No such file or directory");
    row("next .", ".: is not a file");
    row("next s.csv --playlists s.csv", "s.csv: is not a folder");
    row("explain --playlists missing a", "missing: is not a folder");
}

void tst_ToolHelp::WhatIsUnknownIsRefused()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, message);
    m_call.Write(u"s.csv"_s, "");
    const CommandCall::Result result = m_call.Run(arguments);
    QCOMPARE(result.errors, message);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.status, 3);
}

void tst_ToolHelp::ColoursAreForTerminalsAlone()
{
    m_call.Write(u"s.csv"_s, "1111111|08:30:00|*|*|*|||Volume|5\n");
    const QString rehearse = TOOL + u" rehearse s.csv --from 2024-05-15"_s;
    QVERIFY(RunOnTerminal(u"env -u NO_COLOR TERM=xterm "_s + rehearse).output.contains(ESCAPE));
    QVERIFY(!RunOnTerminal(u"env NO_COLOR=1 TERM=xterm "_s + rehearse).output.contains(ESCAPE));
    QVERIFY(!RunOnTerminal(u"env -u NO_COLOR TERM=dumb "_s + rehearse).output.contains(ESCAPE));
    const QString piped = u"env -u NO_COLOR TERM=xterm %1 | cat"_s.arg(rehearse);
    const CommandCall::Result result = RunOnTerminal(piped);
    QVERIFY(!result.output.contains(ESCAPE));
    QVERIFY2(result.output.contains("SetMasterVolume(5.0)"_L1), qPrintable(result.output));
}

OZNA_CASE(ToolHelp, tst_ToolHelp)
#include "tst_ToolHelp.moc"
