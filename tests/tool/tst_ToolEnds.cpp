#include "CommandCall.h"
#include "Suite.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

// What becomes of a command that is ended before its end: by Ctrl-C and other signals, or by its reader. And the bar
// that shows how far it is.
class tst_ToolEnds final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void AReaderThatEndsEarlyLeavesNothingBehind();
    void ASignalLeavesNothingBehind_data();
    void ASignalLeavesNothingBehind();
    void OnATerminalABarShowsAndCtrlCEndsIt();
    void InAPipeNoBarShowsAndASignalEndsIt();

private:
    // A schedule whose rehearsal would take far longer than a test may.
    void WriteLongSchedule() const;

    CommandCall m_call;
};

namespace
{

const QString TOOL = QStringLiteral(OZNA_TOOL);
const QByteArray BAR = QByteArrayLiteral("\r[");
const QByteArray BAR_GONE = QByteArrayLiteral("\r\x1b[K");
const QStringList LONG_REHEARSAL{TOOL,        u"rehearse"_s, u"long.csv"_s, u"--start-at"_s, u"2024-05-15"_s,
                                 u"--days"_s, u"36600"_s};
constexpr int DEADLINE_MS = 40000;
constexpr int BAR_MS = 2000; // after which a bar shows for sure
constexpr int LONG_LINES = 500;

// Whether the process has a handler for the signal: without one it would just be killed.
bool Catches(qint64 process, int signal)
{
    QFile status(u"/proc/%1/status"_s.arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    static const QRegularExpression CAUGHT(u"^SigCgt:\\s*([0-9a-f]+)$"_s, QRegularExpression::MultilineOption);
    const QString mask = CAUGHT.match(QString::fromLatin1(status.readAll())).captured(1);
    return (mask.toULongLong(nullptr, 16) >> (signal - 1) & 1U) != 0;
}

} // namespace

void tst_ToolEnds::WriteLongSchedule() const
{
    QByteArray schedule;
    for (int i = 0; i < LONG_LINES; ++i)
        schedule += u"1111111|%1:%2:30|*|*|*|||Volume|%3\n"_s.arg(i % 24, 2, 10, '0'_L1)
                        .arg(i % 60, 2, 10, '0'_L1)
                        .arg(i)
                        .toLatin1();
    m_call.Write(u"long.csv"_s, schedule);
}

void tst_ToolEnds::AReaderThatEndsEarlyLeavesNothingBehind()
{
    // Far more than a pipe holds.
    m_call.Write(u"wrong.csv"_s, QByteArray("nonsense\n").repeated(2000));
    QVERIFY(QDir(m_call.Folder()).mkpath(u"temporary"_s));
    const QString command = u"{ TMPDIR=temporary %1 check wrong.csv; echo $? >status; } | head -n 1"_s;
    const CommandCall::Result result = m_call.RunProgram(u"sh"_s, {u"-c"_s, command.arg(TOOL)});
    QVERIFY2(result.output.startsWith("wrong.csv:1:1: error: "_L1), qPrintable(result.output));
    QCOMPARE(result.errors, QString());
    QFile status(m_call.Folder() + u"/status"_s);
    QVERIFY(status.open(QIODevice::ReadOnly));
    QCOMPARE(status.readAll().trimmed(), QByteArray("2"));
    QVERIFY(QDir(m_call.Folder() + u"/temporary"_s).isEmpty());
}

void tst_ToolEnds::ASignalLeavesNothingBehind_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("terminal closed") << SIGHUP;
    QTest::newRow("told to end") << SIGTERM;
}

void tst_ToolEnds::ASignalLeavesNothingBehind()
{
    QFETCH(const int, signal);
    WriteLongSchedule();
    const QTemporaryDir temporary;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TMPDIR"_s, temporary.path());
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

void tst_ToolEnds::OnATerminalABarShowsAndCtrlCEndsIt()
{
    WriteLongSchedule();
    QProcess process;
    process.setWorkingDirectory(m_call.Folder());
    process.start(u"script"_s, {u"-qec"_s, LONG_REHEARSAL.join(u' '), u"/dev/null"_s});
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT((output += process.readAllStandardOutput()).contains(BAR), DEADLINE_MS);
    process.write("\x03");
    QVERIFY(process.waitForFinished(DEADLINE_MS));
    output += process.readAllStandardOutput();
    QCOMPARE(process.exitCode(), 130);
    QVERIFY(output.contains(BAR_GONE));
    QVERIFY2(output.contains(" requests\r\ninterrupted: complete until "), output.right(300).constData());
}

void tst_ToolEnds::InAPipeNoBarShowsAndASignalEndsIt()
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
    QVERIFY(!process.readAllStandardError().contains(BAR));
    const QByteArray output = process.readAllStandardOutput();
    QVERIFY2(output.startsWith("Wed 2024-05-15\n"), output.left(200).constData());
}

OZNA_CASE(ToolEnds, tst_ToolEnds)
#include "tst_ToolEnds.moc"
