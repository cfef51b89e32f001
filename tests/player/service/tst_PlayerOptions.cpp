#include "BuiltProgram.h"
#include "Suite.h"

#include <QProcess>
#include <QTest>

#include <cstdlib>

using namespace Qt::StringLiterals;

// The player's arguments.
class tst_PlayerOptions final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void EachIsTakenOrRefused_data();
    void EachIsTakenOrRefused();
};

void tst_PlayerOptions::EachIsTakenOrRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("begin");
    QTest::newRow("help") << QStringList(u"--help"_s) << EXIT_SUCCESS << QByteArray("Usage: ");
    QTest::newRow("version") << QStringList(u"--version"_s) << EXIT_SUCCESS << QByteArray("ozna-player ");
    QTest::newRow("unknown") << QStringList(u"--louder"_s) << EXIT_FAILURE
                             << QByteArray("ozna-player: Unknown option 'louder'");
    QTest::newRow("argument") << QStringList(u"gong.wav"_s) << EXIT_FAILURE
                              << QByteArray("ozna-player: no argument expected: gong.wav");
    QTest::newRow("two") << QStringList({u"--test"_s, u"--measure"_s}) << EXIT_FAILURE
                         << QByteArray("ozna-player: one option at a time");
}

void tst_PlayerOptions::EachIsTakenOrRefused()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const int, status);
    QFETCH(const QByteArray, begin);
    QProcess process;
    BuiltProgram::Set(process, u"ozna-player"_s, arguments);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), status);
    const QByteArray output = process.readAll();
    QVERIFY2(output.startsWith(begin), output.constData());
}

OZNA_CASE(PlayerOptions, tst_PlayerOptions)

#include "tst_PlayerOptions.moc"
