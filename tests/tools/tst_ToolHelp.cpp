#include "CommandCall.h"
#include "ToolHelp.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

// What all commands have in common: help, refusals, colours, the bar of progress, an end by Ctrl-C.
class tst_ToolHelp final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void EveryHelpFitsATerminal();
    void TheVersionIsTold();
    void WhatIsUnknownIsRefused_data();
    void WhatIsUnknownIsRefused();
    void ColoursAreForTerminalsAlone();
    void AReaderThatEndsEarlyLeavesNothingBehind();
    void ASignalLeavesNothingBehind_data();
    void ASignalLeavesNothingBehind();
    void OnATerminalABarShowsAndCtrlCEndsIt();
    void InAPipeNoBarShowsAndASignalEndsIt();

private:
    // Runs a shell command on a terminal of its own; what it writes there, standard output and error.
    [[nodiscard]] CommandCall::Result RunOnTerminal(const QString& command) const;

    // A schedule whose rehearsal would take far longer than a test may.
    void WriteLongSchedule() const;

    CommandCall m_call;
};

namespace
{

const QString TOOL = QStringLiteral(OZNA_TOOL);
const QString HELP = QStringLiteral("--help");
const QString ESCAPE = QStringLiteral("\x1b[");
const QByteArray BAR = QByteArrayLiteral("\r[");
const QByteArray BAR_GONE = QByteArrayLiteral("\r\x1b[K");
const QStringList LONG_REHEARSAL{TOOL,
                                 QStringLiteral("rehearse"),
                                 QStringLiteral("long.csv"),
                                 QStringLiteral("--start-at"),
                                 QStringLiteral("2024-05-15"),
                                 QStringLiteral("--days"),
                                 QStringLiteral("36600")};
constexpr int DEADLINE_MS = 40000;
constexpr int BAR_MS = 2000; // after which a bar shows for sure
constexpr int LONG_LINES = 500;
constexpr int HEIGHT = 24;
constexpr int WIDTH = 80;

// Whether the process has a handler for the signal: without one it would just be killed.
bool Catches(qint64 process, int signal)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    static const QRegularExpression CAUGHT(QStringLiteral("^SigCgt:\\s*([0-9a-f]+)$"),
                                           QRegularExpression::MultilineOption);
    const QString mask = CAUGHT.match(QString::fromLatin1(status.readAll())).captured(1);
    return (mask.toULongLong(nullptr, 16) >> (signal - 1) & 1U) != 0;
}

} // namespace

CommandCall::Result tst_ToolHelp::RunOnTerminal(const QString& command) const
{
    return m_call.RunProgram(QStringLiteral("script"), {QStringLiteral("-qec"), command, QStringLiteral("/dev/null")});
}

void tst_ToolHelp::WriteLongSchedule() const
{
    QByteArray schedule;
    for (int i = 0; i < LONG_LINES; ++i)
        schedule += QStringLiteral("1111111|%1:%2:30|*|*|*|||Volume|%3\n")
                        .arg(i % 24, 2, 10, QLatin1Char('0'))
                        .arg(i % 60, 2, 10, QLatin1Char('0'))
                        .arg(i)
                        .toLatin1();
    m_call.Write(QStringLiteral("long.csv"), schedule);
}

void tst_ToolHelp::EveryHelpFitsATerminal()
{
    const QStringList commands = ToolHelp::Commands(m_call);
    QVERIFY(commands.size() >= 5);
    QList<QStringList> calls{{HELP}, {QStringLiteral("-h")}};
    for (const QString& command : commands)
        calls.append({{command, HELP}, {command, QStringLiteral("-h")}});
    for (const QStringList& arguments : calls)
    {
        const CommandCall::Result result = m_call.Run(arguments);
        const QString told = arguments.join(u' ');
        QVERIFY2(result.status == 0 && result.errors.isEmpty(), qPrintable(told));
        QVERIFY2(result.output.startsWith(QLatin1String("Usage: ozna-schedule ")), qPrintable(told));
        const QStringList lines = result.output.split(u'\n');
        QVERIFY2(lines.size() - 1 <= HEIGHT, qPrintable(told));
        for (const QString& line : lines)
            QVERIFY2(line.size() <= WIDTH, qPrintable(told + u'\n' + line));
    }
}

void tst_ToolHelp::TheVersionIsTold()
{
    const CommandCall::Result result = m_call.Run({QStringLiteral("--version")});
    QCOMPARE(result.status, 0);
    QVERIFY2(
        QRegularExpression(QStringLiteral("^ozna-schedule \\d+\\.\\d+\\.\\d+\\n$")).match(result.output).hasMatch(),
        qPrintable(result.output));
}

void tst_ToolHelp::WhatIsUnknownIsRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");

    const auto row = [](const char* arguments, const char* message) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(u' ', Qt::SkipEmptyParts)
                                 << QStringLiteral("ozna-schedule: %1\n").arg(QLatin1String(message));
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
    m_call.Write(QStringLiteral("s.csv"), "");
    const CommandCall::Result result = m_call.Run(arguments);
    QCOMPARE(result.errors, message);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.status, 3);
}

void tst_ToolHelp::ColoursAreForTerminalsAlone()
{
    m_call.Write(QStringLiteral("s.csv"), "1111111|08:30:00|*|*|*|||Volume|5\n");
    const QString rehearse = TOOL + QStringLiteral(" rehearse s.csv --from 2024-05-15");
    QVERIFY(RunOnTerminal(QStringLiteral("env -u NO_COLOR TERM=xterm ") + rehearse).output.contains(ESCAPE));
    QVERIFY(!RunOnTerminal(QStringLiteral("env NO_COLOR=1 TERM=xterm ") + rehearse).output.contains(ESCAPE));
    QVERIFY(!RunOnTerminal(QStringLiteral("env -u NO_COLOR TERM=dumb ") + rehearse).output.contains(ESCAPE));
    const QString piped = QStringLiteral("env -u NO_COLOR TERM=xterm %1 | cat").arg(rehearse);
    const CommandCall::Result result = RunOnTerminal(piped);
    QVERIFY(!result.output.contains(ESCAPE));
    QVERIFY2(result.output.contains(QLatin1String("SetMasterVolume(5.0)")), qPrintable(result.output));
}

void tst_ToolHelp::AReaderThatEndsEarlyLeavesNothingBehind()
{
    // Far more than a pipe holds.
    m_call.Write(QStringLiteral("wrong.csv"), QByteArray("nonsense\n").repeated(10000));
    QVERIFY(QDir(m_call.Folder()).mkpath(QStringLiteral("temporary")));
    const QString command = QStringLiteral("{ TMPDIR=temporary %1 check wrong.csv; echo $? >status; } | head -n 1");
    const CommandCall::Result result =
        m_call.RunProgram(QStringLiteral("sh"), {QStringLiteral("-c"), command.arg(TOOL)});
    QVERIFY2(result.output.startsWith(QLatin1String("wrong.csv:1: error: ")), qPrintable(result.output));
    QCOMPARE(result.errors, QString());
    QFile status(m_call.Folder() + QStringLiteral("/status"));
    QVERIFY(status.open(QIODevice::ReadOnly));
    QCOMPARE(status.readAll().trimmed(), QByteArray("2"));
    QVERIFY(QDir(m_call.Folder() + QStringLiteral("/temporary")).isEmpty());
}

void tst_ToolHelp::ASignalLeavesNothingBehind_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("terminal closed") << SIGHUP;
    QTest::newRow("told to end") << SIGTERM;
}

void tst_ToolHelp::ASignalLeavesNothingBehind()
{
    QFETCH(const int, signal);
    WriteLongSchedule();
    const QTemporaryDir temporary;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), temporary.path());
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_call.Folder());
    process.start(LONG_REHEARSAL.first(), LONG_REHEARSAL.mid(1));
    // Until then it is a copy of this process, which catches signals as well.
    QVERIFY(process.waitForStarted(DEADLINE_MS));
    // It is at work, in a folder of its own.
    QTRY_VERIFY_WITH_TIMEOUT(Catches(process.processId(), signal), DEADLINE_MS);
    QTRY_VERIFY_WITH_TIMEOUT(!QDir(temporary.path()).isEmpty(), DEADLINE_MS);
    QCOMPARE(::kill(static_cast<pid_t>(process.processId()), signal), 0);
    QVERIFY(process.waitForFinished(DEADLINE_MS));
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QVERIFY(QDir(temporary.path()).isEmpty());
}

void tst_ToolHelp::OnATerminalABarShowsAndCtrlCEndsIt()
{
    WriteLongSchedule();
    QProcess process;
    process.setWorkingDirectory(m_call.Folder());
    process.start(QStringLiteral("script"),
                  {QStringLiteral("-qec"), LONG_REHEARSAL.join(u' '), QStringLiteral("/dev/null")});
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT((output += process.readAllStandardOutput()).contains(BAR), DEADLINE_MS);
    process.write("\x03");
    QVERIFY(process.waitForFinished(DEADLINE_MS));
    output += process.readAllStandardOutput();
    QCOMPARE(process.exitCode(), 130);
    QVERIFY(output.contains(BAR_GONE));
    QVERIFY2(output.trimmed().endsWith("requests"), output.right(200).constData());
}

void tst_ToolHelp::InAPipeNoBarShowsAndASignalEndsIt()
{
    WriteLongSchedule();
    QProcess process;
    process.setWorkingDirectory(m_call.Folder());
    process.start(LONG_REHEARSAL.first(), LONG_REHEARSAL.mid(1));
    // Until then it is a copy of this process, which catches signals as well.
    QVERIFY(process.waitForStarted(DEADLINE_MS));
    QTRY_VERIFY_WITH_TIMEOUT(Catches(process.processId(), SIGINT), DEADLINE_MS);
    // Where there was a bar, it would be there by now.
    QVERIFY(!process.waitForFinished(BAR_MS));
    QCOMPARE(::kill(static_cast<pid_t>(process.processId()), SIGINT), 0);
    QVERIFY(process.waitForFinished(DEADLINE_MS));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 130);
    QCOMPARE(process.readAllStandardError(), QByteArray());
    const QByteArray output = process.readAllStandardOutput();
    QVERIFY2(output.startsWith("Wed 2024-05-15\n") && output.endsWith(" requests\n"), output.right(200).constData());
}

QTEST_GUILESS_MAIN(tst_ToolHelp)
#include "tst_ToolHelp.moc"
