#include "CheckRun.h"
#include "Suite.h"
#include "TaskTable.h"
#include "TextDiff.h"
#include "check/Findings.h"
#include "sound/SoundFile.h"
#include "words/Kinds.h"

#include <QDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString PLAYLISTS = u"playlists"_s;
const QString CORPUS = u"corpus"_s;
const QString PEERS = u"absent-peer"_s; // is looked for on a bus: tests/bus/tst_Control.cpp
const QString SOUNDS = u"media"_s;

QStringList Folders()
{
    QStringList folders = QDir(CheckRun::DataFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    folders.removeAll(PLAYLISTS);
    folders.removeAll(CORPUS);
    folders.removeAll(SOUNDS);
    return folders;
}

QStringList Names()
{
    QStringList names;
    for (const FindingKindRow& row : FindingKinds::All())
        names.append(QString::fromLatin1(row.name));
    names.sort();
    names.removeAll(PEERS);
    return names;
}

// Kinds of findings about sounds.
bool NeedsSounds(const QString& folder)
{
    return folder.startsWith(SOUNDS);
}

CheckRun Check(const QString& folder, const char* file)
{
    const QStringList sounds = NeedsSounds(folder) ? QStringList{u"--media"_s, u"../"_s + SOUNDS} : QStringList();
    return CheckRun(CheckRun::Fixed() + sounds + QStringList(QString::fromLatin1(file)), folder);
}

} // namespace

// Every kind of finding has a folder of lines that have it, and of lines that are close to it but have none.
class CheckKindsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void EveryKindHasItsFolder();
    void NoKindIsCalledAsAnother();
    void FindingsStandInTheOrderOfLinesAndThenOfKinds();
    void EveryTaskHasRolesForTheParametersThatItNeeds();
    void BadLinesAreFound_data();
    void BadLinesAreFound();
    void GoodLinesAreLeftAlone_data();
    void GoodLinesAreLeftAlone();
};

void CheckKindsTest::EveryKindHasItsFolder()
{
    const QByteArray difference = TextDiff(Names(), Folders(), "folder");
    QVERIFY2(difference.isEmpty(), difference.constData());
}

void CheckKindsTest::NoKindIsCalledAsAnother()
{
    QStringList names = Names();
    QCOMPARE(names.removeDuplicates(), 0);
}

void CheckKindsTest::FindingsStandInTheOrderOfLinesAndThenOfKinds()
{
    Findings findings;
    const auto add = [&findings](int line, FindingKind kind, const char* text) {
        findings.Add({line, kind, {}, QString::fromLatin1(text), {}});
    };
    add(2, FindingKind::FIELD_COUNT, "sixth");
    add(1, FindingKind::BLOCKING, "fourth");
    add(1, FindingKind::FALLBACK, "second");
    add(1, FindingKind::FALLBACK, "third");
    add(1, FindingKind::MIDNIGHT, "first");
    add(1, FindingKind::BLOCKING, "fifth");
    findings.Sort();
    QStringList texts;
    for (const Finding& finding : findings.All())
        texts.append(finding.text);
    QCOMPARE(texts.join(u' '), u"first second third fourth fifth sixth"_s);
}

void CheckKindsTest::EveryTaskHasRolesForTheParametersThatItNeeds()
{
    int kinds = 0;
    for (const TaskKind* kind = TaskTable::Find(TASK_LIGHT); kind != nullptr;
         kind = TaskTable::Find(static_cast<TaskType>(kinds)))
    {
        QVERIFY2(static_cast<int>(Kinds::Of(kind->type).Roles().size()) >= kind->minParameters, kind->logName);
        QVERIFY2(static_cast<int>(Kinds::Of(kind->type).Roles().size()) <= kind->maxParameters, kind->logName);
        ++kinds;
    }
    QCOMPARE(kinds, static_cast<int>(TaskTable::SIZE));
}

void CheckKindsTest::BadLinesAreFound_data()
{
    QTest::addColumn<QString>("folder");
    for (const QString& folder : Folders())
        QTest::newRow(qPrintable(folder)) << folder;
}

void CheckKindsTest::BadLinesAreFound()
{
    QFETCH(const QString, folder);
    if (NeedsSounds(folder) && !SoundFile::IsSupported())
        QSKIP("built without libsndfile");
    QFile file(CheckRun::DataFolder() + u'/' + folder + u"/bad.expected"_s);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QStringList expected = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    const CheckRun run = Check(folder, "bad.csv");
    const QByteArray difference = TextDiff(expected, run.Lines(), "finding");
    QVERIFY2(difference.isEmpty(), difference.constData());
    QCOMPARE(run.errors, QByteArray());

    // What is expected is of that kind, and of no other.
    const QStringList found = run.Lines();
    QVERIFY(found.size() > 1);
    for (const QString& line : found.first(found.size() - 1))
        QVERIFY2(line.endsWith(u" [%1]"_s.arg(folder)), qPrintable(line));
}

void CheckKindsTest::GoodLinesAreLeftAlone_data()
{
    BadLinesAreFound_data();
}

void CheckKindsTest::GoodLinesAreLeftAlone()
{
    QFETCH(const QString, folder);
    if (NeedsSounds(folder) && !SoundFile::IsSupported())
        QSKIP("built without libsndfile");
    const CheckRun run = Check(folder, "good.csv");
    QCOMPARE(run.Lines().size(), 1);
    QVERIFY2(run.Lines().first().endsWith(u", 0 errors, 0 warnings"_s), run.output.constData());
    QCOMPARE(run.status, 0);
    QCOMPARE(run.errors, QByteArray());
}

OZNA_CASE(CheckKinds, CheckKindsTest)
#include "tst_CheckKinds.moc"
