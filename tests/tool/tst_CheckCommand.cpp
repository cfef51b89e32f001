#include "CheckRun.h"
#include "CommandCall.h"
#include "OrdinaryUser.h"
#include "Suite.h"
#include "TextDiff.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int CLEAN = 0;
constexpr int WARNINGS = 1;
constexpr int ERRORS = 2;
constexpr int FAILED = 3;

const QByteArray GOOD = "1111100|08:30:00|*|*|*|||StopMessage\n";
const QByteArray WARNED = "1111100|8:30:00|*|*|*|||StopMessage\n";
const QByteArray REJECTED = "1111100|08:30|*|*|*|||StopMessage\n";

} // namespace

class CheckCommandTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void TheCorpusHasTheFindingsThatItShould();
    void TheStatusTellsTheWorst();
    void AFileThatCannotBeReadFails();
    void WhatItIsNotGivenRightFails();
    void AnyEndOfLineAndAByteOrderMarkAreFine();
    void CarriageReturnsAloneMakeOneLine();
    void RejectedLinesAreNotComparedWithEachOther();
    void TodayMovesWhatIsOver();
    void ASpotDateMayBeDueInAnotherMonth();
    void AThousandLinesTakeNoTime();
    void OfManyLinesThatAreHeldUpTheFirstAreNamed();

private:
    // Writes a schedule, and gives its path.
    [[nodiscard]] QString Write(const QByteArray& content) const
    {
        m_call.Write(u"schedule.csv"_s, content);
        return m_call.Folder() + u"/schedule.csv"_s;
    }

    CommandCall m_call;
};

void CheckCommandTest::TheCorpusHasTheFindingsThatItShould()
{
    const QString folder = u"corpus"_s;
    QFile file(CheckRun::DataFolder() + u'/' + folder + u"/expected"_s);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QStringList expected = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    const CheckRun run({u"schedule.csv"_s, u"--playlists"_s, u"playlists"_s, u"--today"_s, u"2024-05-15"_s, u"--tz"_s,
                        u"Europe/Rome"_s},
                       folder);
    const QByteArray difference = TextDiff(expected, run.Lines(), "finding");
    QVERIFY2(difference.isEmpty(), difference.constData());
    QCOMPARE(run.status, ERRORS);
}

void CheckCommandTest::TheStatusTellsTheWorst()
{
    struct Run
    {
        QByteArray content;
        bool strict;
        int status;
    };
    for (const Run& run : {Run{GOOD, false, CLEAN}, Run{GOOD, true, CLEAN}, Run{{}, true, CLEAN},
                           Run{GOOD + WARNED, false, CLEAN}, Run{GOOD + WARNED, true, WARNINGS},
                           Run{GOOD + REJECTED, false, ERRORS}, Run{WARNED + REJECTED, true, ERRORS}})
    {
        const QStringList arguments = QStringList{Write(run.content)} + QStringList(run.strict ? 1 : 0, u"--strict"_s);
        QCOMPARE(CheckRun(arguments).status, run.status);
        QCOMPARE(CheckRun(arguments + QStringList(u"--json"_s)).status, run.status);
    }
}

void CheckCommandTest::AFileThatCannotBeReadFails()
{
    const OrdinaryUser user;
    const CheckRun missing({m_call.Folder() + u"/missing.csv"_s});
    QCOMPARE(missing.status, FAILED);
    QVERIFY(missing.errors.contains("missing.csv: "));
    QCOMPARE(missing.output, QByteArray());

    QTemporaryDir folder;
    QFile closed(folder.filePath(u"closed.csv"_s));
    QVERIFY(closed.open(QIODevice::WriteOnly));
    QVERIFY(closed.setPermissions(QFileDevice::Permissions()));
    const CheckRun unreadable({closed.fileName()});
    QCOMPARE(unreadable.status, FAILED);
    QVERIFY(unreadable.errors.contains("closed.csv: "));
}

void CheckCommandTest::WhatItIsNotGivenRightFails()
{
    QCOMPARE(CheckRun({m_call.Folder()}).status, FAILED);
    QCOMPARE(CheckRun({Write(GOOD), u"--playlists"_s, m_call.Folder() + u"/none"_s}).status, FAILED);
    QCOMPARE(CheckRun({}).status, FAILED);
    QCOMPARE(CheckRun({Write(GOOD), u"--tz"_s, u"Europe/Atlantis"_s}).status, FAILED);
    QCOMPARE(CheckRun({Write(GOOD), u"--today"_s, u"15.5.2024"_s}).status, FAILED);
    // The system shows a process's memory as a regular file, and has nothing at its start.
    const CheckRun unread({u"/proc/self/mem"_s});
    QCOMPARE(unread.status, FAILED);
    QVERIFY2(unread.errors.contains("/proc/self/mem: Input/output error"), unread.errors.constData());
}

void CheckCommandTest::AnyEndOfLineAndAByteOrderMarkAreFine()
{
    const QByteArray feeds = GOOD + WARNED;
    for (const QByteArray& content : {feeds, QByteArray(feeds).replace("\n", "\r\n"), "\xef\xbb\xbf" + feeds})
    {
        const QStringList lines = CheckRun({Write(content)}).Lines();
        QCOMPARE(lines.size(), 2);
        QVERIFY2(lines[0].contains(u"schedule.csv:2:9: warning: start time: "_s), qPrintable(lines[0]));
        QVERIFY2(lines[0].endsWith(u" [time-form]"_s), qPrintable(lines[0]));
        QCOMPARE(lines[1], u"2 lines, 0 errors, 1 warning"_s);
    }
}

void CheckCommandTest::CarriageReturnsAloneMakeOneLine()
{
    const QStringList lines = CheckRun({Write(QByteArray(GOOD + WARNED).replace('\n', '\r'))}).Lines();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines[0].contains(u"schedule.csv:1:37: error: "_s), qPrintable(lines[0]));
    QVERIFY2(lines[0].endsWith(u" [carriage-return]"_s), qPrintable(lines[0]));
    QCOMPARE(lines[1], u"1 line, 1 error, 0 warnings"_s);
}

void CheckCommandTest::RejectedLinesAreNotComparedWithEachOther()
{
    const QStringList lines = CheckRun({Write(REJECTED + REJECTED)}).Lines();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.filter(u"[time-parts]"_s).size(), 2);
}

void CheckCommandTest::TodayMovesWhatIsOver()
{
    const QString file = Write("1111111|08:30:00|*|*|*||20240515|StopMessage\n");
    const QString today = u"--today"_s;
    QCOMPARE(CheckRun({file, today, u"2024-05-15"_s}).Lines().size(), 1);
    QCOMPARE(CheckRun({file, today, u"2024-05-16"_s}).Lines().size(), 2);
}

void CheckCommandTest::ASpotDateMayBeDueInAnotherMonth()
{
    struct SpotDate
    {
        const char* zone;
        const char* line;
        const char* due;
    };
    // The last one is looked for before that second, when it is still the day before in UTC.
    for (const SpotDate& date :
         {SpotDate{"America/Los_Angeles", "0000000|20:00:00|1|7|*|||StopMessage\n", "2024-06-30"},
          SpotDate{"Europe/Rome", "0000000|00:30:00|31|7|*|||StopMessage\n", "2024-08-01"},
          SpotDate{"Europe/Rome", "0000000|02:00:00|31|7|*|||StopMessage\n", "2024-08-01"}})
    {
        const CheckRun run({Write(date.line), u"--tz"_s, QLatin1String(date.zone), u"--today"_s, u"2024-05-15"_s});
        // It is due, if on another local date.
        QCOMPARE(run.Lines().size(), 2);
        const QString line = run.Lines().first();
        QVERIFY2(line.contains(u"it is due on %1, local date"_s.arg(QLatin1String(date.due))), qPrintable(line));
        QVERIFY2(line.endsWith(u" [utc-date]"_s), qPrintable(line));
    }
}

void CheckCommandTest::AThousandLinesTakeNoTime()
{
    QByteArray content;
    for (int line = 0; line < 1000; ++line)
    {
        const QTime time = QTime(4, 0).addSecs(line * 60 + line % 50 + 5);
        content += u"1111100|%1|%2|*|*|||Volume|%3\n"_s.arg(time.toString(u"HH:mm:ss"_s))
                       .arg(line % 28 + 1)
                       .arg(line % 100)
                       .toLatin1();
    }
    const QString file = Write(content);
    QElapsedTimer since;
    since.start();
    const CheckRun run({file});
    QCOMPARE(run.Lines().last(), u"1000 lines, 0 errors, 0 warnings"_s);
    // Far beyond what it takes, for machines that are busy or slowed down by sanitizers.
    QVERIFY2(since.elapsed() < 20000, QByteArray::number(since.elapsed()).constData());
}

void CheckCommandTest::OfManyLinesThatAreHeldUpTheFirstAreNamed()
{
    const QByteArray volumes = QByteArray("1111100|08:00:00|*|*|*|||Volume|1\n").repeated(13);
    const QStringList lines = CheckRun({Write("1111100|08:00:00|*|*|*|||Light|5\n" + volumes)}).Lines();
    QVERIFY2(lines[0].contains(u"hold up lines 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 and 3 more; "_s), qPrintable(lines[0]));
}

OZNA_CASE(CheckCommand, CheckCommandTest)
#include "tst_CheckCommand.moc"
