#include "BuiltProgram.h"
#include "HeardTest.h"
#include "PulseServer.h"
#include "Rows.h"
#include "Suite.h"
#include "ear/Gong.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

// What a person asks the player for on a terminal, and a sound server as its output.
class HeardCommands : public HeardTest
{
    Q_OBJECT
private Q_SLOTS:
    void ATestIsHeardAtItsFiveSeconds();
    void ATestTellsWhyNothingIsHeard();
    void WhatNobodyCanListenToIsNotMeasured();
    void AServersOutputIsMeasured_data();
    void AServersOutputIsMeasured();
    void TheOutputsAreListed();
    void AServerThatIsStartedAnewIsUsedAgain();

protected:
    void Begin() override { m_environment = QProcessEnvironment::systemEnvironment(); }

private:
    // Runs the player with an option to its end; what it exits with.
    [[nodiscard]] int Run(const QString& option);
    [[nodiscard]] QString Printed() const { return m_printed; }

    QProcessEnvironment m_environment;
    QString m_printed;
};

namespace
{

constexpr int LONGEST_MS = 120'000;
const QString NO_SERVER = u"unix:/nonexistent"_s;

} // namespace

int HeardCommands::Run(const QString& option)
{
    if (!m_environment.contains(u"PULSE_SERVER"_s))
        m_environment.insert(u"PULSE_SERVER"_s, NO_SERVER);
    m_environment.insert(u"OZNA_CONFIG_FILE"_s, Path(u"ozna.ini"_s));
    m_environment.insert(u"TZ"_s, u"UTC"_s);
    m_environment.insert(u"OZNA_LOG_LEVEL"_s, u"0"_s);
    QProcess process;
    process.setProcessEnvironment(m_environment);
    BuiltProgram::Set(process, u"ozna-player"_s, {option});
    process.start();
    // The ear hears in a thread of its own.
    if (!process.waitForFinished(LONGEST_MS))
        return -1;
    m_printed = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    qInfo("%s", qPrintable(m_printed));
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

void HeardCommands::ATestIsHeardAtItsFiveSeconds()
{
    QCOMPARE(Run(u"--test"_s), 0);
    const std::vector<Ear::Heard> sounds = Hearing().Sounds();
    QCOMPARE(sounds.size(), size_t{1});
    const qint64 due_ms = std::llround(sounds[0].at_ms / 5000) * 5000;
    QVERIFY2(qAbs(sounds[0].at_ms - static_cast<double>(due_ms)) < EXACT_MS, qPrintable(Printed()));
    QVERIFY(Printed().startsWith(u"A gong at %1.000 on file:"_s.arg(TimeText(due_ms))));
    static const QRegularExpression heard(
        u"Given to file:\\S+, to be heard at (\\S+) by the output's clock, [+-][0-9.]+ ms from"_s);
    const QRegularExpressionMatch match = heard.match(Printed());
    QVERIFY(match.hasMatch());
    const QTime told = QTime::fromString(match.captured(1), u"hh:mm:ss.zzz");
    const int differs_ms = QDateTime::fromMSecsSinceEpoch(std::llround(sounds[0].at_ms), Qt::UTC).time().msecsTo(told);
    QVERIFY2(qAbs(differs_ms) <= EXACT_MS, qPrintable(Printed()));
}

void HeardCommands::ATestTellsWhyNothingIsHeard()
{
    WriteFile(Path(u"ozna.ini"_s), {});
    QVERIFY(Run(u"--test"_s) > 0);
    QVERIFY(Printed().contains(u"Not heard on pulse: "_s));
    QVERIFY(!Printed().endsWith(u": "_s));
}

void HeardCommands::WhatNobodyCanListenToIsNotMeasured()
{
    QVERIFY(Run(u"--measure"_s) > 0);
    QVERIFY(Printed().startsWith(u"Nothing can listen to file:"_s));
    WriteFile(Path(u"ozna.ini"_s), {});
    QVERIFY(Run(u"--measure"_s) > 0);
    QVERIFY(Printed().startsWith(u"Can't listen to what the sound server plays: "_s));
    QCOMPARE(Hearing().Frames(), qint64{0});
}

void HeardCommands::AServersOutputIsMeasured_data()
{
    Rows<QByteArray>::Add({{"the default one", QByteArray()}, {"one by its name", QByteArray("Output=pulse:yard\n")}});
}

void HeardCommands::AServersOutputIsMeasured()
{
    const PulseServer server;
    server.Apply(m_environment);
    WriteFile(Path(u"ozna.ini"_s), "[PLAYER]\n" + Rows<QByteArray>::Current());
    const int status = Run(u"--measure"_s);
    QCOMPARE(Printed().count(u"\ndue "_s), 10);
    static const QRegularExpression sum(u"([0-9]+) of 10 heard; error median ([+-][0-9.]+), from"_s);
    const QRegularExpressionMatch match = sum.match(Printed());
    QVERIFY(match.hasMatch());
    // On a machine that is very busy the server drops what it records, and its buffers come and go.
    QVERIFY(match.captured(1).toInt() >= 7);
    QCOMPARE(status == 0, match.captured(1).toInt() == 10);
    QVERIFY2(qAbs(match.captured(2).toDouble()) < 25, qPrintable(match.captured(2)));
}

void HeardCommands::TheOutputsAreListed()
{
    const PulseServer server;
    server.Apply(m_environment);
    QCOMPARE(Run(u"--list-outputs"_s), 0);
    QVERIFY(Printed().startsWith(u"Output=pulse "_s));
    QVERIFY(Printed().contains(u"Null Output"_s));
    QVERIFY(Printed().contains(u"\nOutput=pulse:yard "_s));
    WriteFile(Path(u"ozna.ini"_s), "[PLAYER]\nOutput=pulse:yard\n");
    QCOMPARE(Run(u"--list-outputs"_s), 0);
    QVERIFY(Printed().endsWith(u"sound goes to Output=pulse:yard, which is there."_s));
    WriteFile(Path(u"ozna.ini"_s), "[PLAYER]\nOutput=pulse:attic\n");
    QCOMPARE(Run(u"--list-outputs"_s), 0);
    QVERIFY(Printed().endsWith(u"sound goes to Output=pulse:attic, which is not there."_s));
}

void HeardCommands::AServerThatIsStartedAnewIsUsedAgain()
{
    PulseServer server;
    server.Apply(Player().Environment());
    WriteFile(Path(u"ozna.ini"_s), u"[PLAYER]\nMedia=%1\n"_s.arg(MediaPath(QString())).toUtf8());
    WriteSound(u"gong.wav"_s, Gong::Samples());
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(8000);
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    // Not while the output begins to play: there the library's sink locks itself out for ever.
    Pause(1500);
    server.Kill();
    Pause(1000);
    server.Start();
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted gong.wav"_s));
    // Not before its end.
    QVERIFY(QDateTime::currentMSecsSinceEpoch() > due_ms + Gong::LENGTH_MS - 300);
    const QStringList log = Player().Log(4);
    QVERIFY2(log.filter(u"OUTPUT OPENED"_s).size() == 2, qPrintable(log.join(u'\n')));
    QCOMPARE(Client().Signals().size(), 1);
    QCOMPARE(StopPlayer(), 0);
    Expect({u"utput"_s, u"OUTPUT"_s});
}

OZNA_CASE(HeardCommands, HeardCommands)
#include "tst_HeardCommands.moc"
