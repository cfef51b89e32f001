#include "BuiltProgram.h"
#include "Suite.h"
#include "Wait.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdlib>

using namespace Qt::StringLiterals;

// What the player tells on a terminal where nothing has to be heard for it.
class tst_PlayerCommands final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void ASignalInterruptsIt_data();
    void ASignalInterruptsIt();
    void NoRecordsStandBetweenItsLines();
    void RecordsComeWhereTheyAreAskedFor();
    void TheListTellsWhetherTheChosenOutputIsThere_data();
    void TheListTellsWhetherTheChosenOutputIsThere();
    void TheHelpNamesTheSettingsAndThePage();

private:
    [[nodiscard]] QString Path(const QString& name) const { return m_folder.filePath(name); }
    void WriteSettings(const QByteArray& lines);
    void Start(const QString& option);
    // What the process exits with; -1 where it does not end, or crashes.
    [[nodiscard]] int WaitForExit();
    [[nodiscard]] int Run(const QString& option);

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    std::optional<QProcess> m_process;
    QString m_printed;
};

namespace
{

constexpr int INTERRUPTED = 130; // as the manual page says

} // namespace

void tst_PlayerCommands::init()
{
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(u"OZNA_CONFIG_FILE"_s, Path(u"ozna.ini"_s));
    m_environment.insert(u"PULSE_SERVER"_s, u"unix:/nonexistent"_s);
    m_environment.remove(u"OZNA_LOG_LEVEL"_s);
    m_printed.clear();
}

void tst_PlayerCommands::WriteSettings(const QByteArray& lines)
{
    QFile file(Path(u"ozna.ini"_s));
    const QByteArray content = "[PLAYER]\n" + lines;
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write the settings");
}

void tst_PlayerCommands::Start(const QString& option)
{
    m_process.emplace();
    m_process->setProcessEnvironment(m_environment);
    BuiltProgram::Set(*m_process, u"ozna-player"_s, {option});
    m_process->start();
}

int tst_PlayerCommands::WaitForExit()
{
    if (!m_process->waitForFinished() || m_process->exitStatus() != QProcess::NormalExit)
        return -1;
    m_printed += QString::fromUtf8(m_process->readAllStandardOutput());
    return m_process->exitCode();
}

int tst_PlayerCommands::Run(const QString& option)
{
    Start(option);
    return WaitForExit();
}

void tst_PlayerCommands::ASignalInterruptsIt_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void tst_PlayerCommands::ASignalInterruptsIt()
{
    QFETCH(const int, signal);
    WriteSettings("Output=file:" + Path(u"sound.raw"_s).toUtf8() + "\n");
    Start(u"--test"_s);
    // The line comes when signals are caught; its gong is seconds ahead.
    QVERIFY(WaitUntil([&] {
        m_printed += QString::fromUtf8(m_process->readAllStandardOutput());
        return m_printed.contains(u'\n');
    }));
    QCOMPARE(::kill(static_cast<pid_t>(m_process->processId()), signal), 0);
    QCOMPARE(WaitForExit(), INTERRUPTED);
    QVERIFY2(m_printed.endsWith(u"\nNot heard on file:%1: interrupted\n"_s.arg(Path(u"sound.raw"_s))),
             qPrintable(m_printed));
}

void tst_PlayerCommands::NoRecordsStandBetweenItsLines()
{
    WriteSettings("Output=file:/nonexistent/sound.raw\nDuck=much\n");
    QCOMPARE(Run(u"--test"_s), EXIT_FAILURE);
    QCOMPARE(m_printed.count(u'\n'), 2);
    QVERIFY2(m_printed.section(u'\n', 1).startsWith(u"Not heard on file:/nonexistent/sound.raw: no output: "_s),
             qPrintable(m_printed));
    QCOMPARE(QString::fromUtf8(m_process->readAllStandardError()),
             u"ozna-player: %1: [PLAYER] Duck=much is of no use: it takes percent from 0 to 100\n"_s.arg(
                 Path(u"ozna.ini"_s)));
}

void tst_PlayerCommands::RecordsComeWhereTheyAreAskedFor()
{
    m_environment.insert(u"OZNA_LOG_LEVEL"_s, u"1"_s);
    WriteSettings("Output=file:/nonexistent/sound.raw\n");
    QCOMPARE(Run(u"--test"_s), EXIT_FAILURE);
    const QString records = QString::fromUtf8(m_process->readAllStandardError());
    QVERIFY2(records.startsWith(u"1 "_s) && records.contains(u"OUTPUT NOT OPENED"_s), qPrintable(records));
}

void tst_PlayerCommands::TheListTellsWhetherTheChosenOutputIsThere_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("words");
    QTest::newRow("a file") << u"file:"_s + Path(u"sound.raw"_s) << u"is there"_s;
    QTest::newRow("a file in no folder") << u"file:/nonexistent/sound.raw"_s << u"is not there"_s;
    QTest::newRow("a server that does not answer") << u"pulse"_s << u"is not there"_s;
    QTest::newRow("an output of a server that does not answer") << u"pulse:hall"_s << u"is not there"_s;
    QTest::newRow("a card") << u"alsa:plughw:CARD=NoSuchCard,DEV=0"_s << u"is not there"_s;
    QTest::newRow("another device") << u"alsa:nosuchdevice"_s
                                    << u"is no card of the list: ozna-player --test tells whether it plays"_s;
    QTest::newRow("of no use") << u"auto"_s << u"is not there"_s;
    // The settings' own way to write it is the one in which it is shown.
    QTest::newRow("what a terminal would obey") << u"\\x1b[31mred"_s << u"is not there"_s;
}

void tst_PlayerCommands::TheListTellsWhetherTheChosenOutputIsThere()
{
    QFETCH(const QString, output);
    QFETCH(const QString, words);
    WriteSettings("Output=" + output.toUtf8() + "\n");
    const int status = Run(u"--list-outputs"_s);
    const QString line =
        u"By the settings in %1 sound goes to Output=%2, which %3.\n"_s.arg(Path(u"ozna.ini"_s), output, words);
    QVERIFY2(m_printed.endsWith(line), qPrintable(m_printed));
    // This machine may have outputs.
    QCOMPARE(status, m_printed.startsWith(u"Output="_s) ? EXIT_SUCCESS : EXIT_FAILURE);
}

void tst_PlayerCommands::TheHelpNamesTheSettingsAndThePage()
{
    QCOMPARE(Run(u"--help"_s), EXIT_SUCCESS);
    QVERIFY2(m_printed.contains(Path(u"ozna.ini"_s)), qPrintable(m_printed));
    QVERIFY2(m_printed.contains(u"ozna-player(8)"_s), qPrintable(m_printed));
}

OZNA_CASE(PlayerCommands, tst_PlayerCommands)

#include "tst_PlayerCommands.moc"
