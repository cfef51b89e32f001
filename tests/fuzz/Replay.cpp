#include "Findings.h"
#include "Suite.h"
#include "Target.h"

#include <QDir>
#include <QTest>

// Hands the target the inputs kept in the tree: those that a fuzzer begins with, and those that once went wrong. The
// environment names the two folders.
class Replay final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void AnInputIsHandled_data();
    void AnInputIsHandled();
};

void Replay::initTestCase()
{
    Target::SetUp();
}

void Replay::AnInputIsHandled_data()
{
    QTest::addColumn<QString>("path");
    for (const char* variable : {"OZNA_SEEDS", "OZNA_REGRESSIONS"})
        QVERIFY2(!qEnvironmentVariableIsEmpty(variable), variable);
    const QDir seeds(qEnvironmentVariable("OZNA_SEEDS"));
    const QDir regressions(qEnvironmentVariable("OZNA_REGRESSIONS"));
    QVERIFY2(!seeds.isEmpty(QDir::Files), qPrintable(seeds.path()));
    for (const QString& name : seeds.entryList(QDir::Files))
        QTest::addRow("seed %s", qPrintable(name)) << seeds.filePath(name);
    // Most targets have none.
    for (const QString& name : regressions.entryList(QDir::Files))
        QTest::addRow("regression %s", qPrintable(name)) << regressions.filePath(name);
}

void Replay::AnInputIsHandled()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    Target::Run(file.readAll());
    const QByteArray findings = Findings::Take();
    QVERIFY2(findings.isEmpty(), findings.constData());
}

OZNA_CASE(Inputs, Replay)
#include "Replay.moc"
