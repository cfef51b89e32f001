#include "CommandCall.h"
#include "Suite.h"
#include "TextDiff.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

// `ozna-schedule rehearse` as its users run it: each folder of tests/data/rehearse has a schedule, the arguments, and
// what comes of it, to the letter.
class RehearseTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ARehearsalIsShownAsExpected_data();
    void ARehearsalIsShownAsExpected();
    void ANameWithAPercentSignIsShownAsItStands();
    void AFileThatIsMissingIsNamed();
    void AMomentThatIsNoneIsNamed_data();
    void AMomentThatIsNoneIsNamed();

private:
    using Outcome = CommandCall::Result;

    static Outcome Run(const QString& folder, const QStringList& arguments);
};

namespace
{

constexpr int STATUS_CLEAN = 0;
constexpr int STATUS_ERRORS = 2;
constexpr int STATUS_FAILED = 3;

const QString DATA = QStringLiteral(OZNA_SOURCES "/tests/data/rehearse");
const QString SCHEDULE = u"schedule.csv"_s;

QString Content(const QDir& folder, const char* name)
{
    QFile file(folder.filePath(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"(cannot be read)"_s;
}

QByteArray Difference(const QString& expected, const QString& found, const char* what)
{
    return TextDiff(expected.split(u'\n'), found.split(u'\n'), what);
}

} // namespace

RehearseTest::Outcome RehearseTest::Run(const QString& folder, const QStringList& arguments)
{
    return CommandCall(folder).Run(QStringList{u"rehearse"_s} + arguments);
}

void RehearseTest::ARehearsalIsShownAsExpected_data()
{
    QTest::addColumn<QString>("folder");
    const QDir data(DATA);
    const QStringList folders = data.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QVERIFY(folders.size() >= 24);
    for (const QString& folder : folders)
        QTest::addRow("%s", qPrintable(folder)) << data.filePath(folder);
}

void RehearseTest::ARehearsalIsShownAsExpected()
{
    QFETCH(const QString, folder);
    const QStringList arguments = Content(folder, "arguments").trimmed().split(u' ');
    const Outcome outcome = Run(folder, QStringList{SCHEDULE} + arguments);
    const QString expectedErrors =
        Content(folder, "expected-errors").replace(u"FOLDER"_s, folder).replace(u"PARENT"_s, QFileInfo(folder).path());
    const QByteArray difference = Difference(Content(folder, "expected"), outcome.output, "line") +
                                  Difference(expectedErrors, outcome.errors, "error");
    QVERIFY2(difference.isEmpty(), difference.constData());
    QCOMPARE(outcome.status, expectedErrors.isEmpty() ? STATUS_CLEAN : STATUS_ERRORS);
}

void RehearseTest::ANameWithAPercentSignIsShownAsItStands()
{
    const CommandCall call;
    call.Write(u"a%1.csv"_s, "nonsense\n1111111|08:00:00|*|*|*|||PlayPlaylist|p%1\n");
    call.Write(u"p%1"_s, "first.mp3;60\nsecond.mp3;60\nthird.mp3;60\n");
    const CommandCall::Result result = call.Run("rehearse a%1.csv --tz UTC --start-at 2024-05-15T08:01");
    QVERIFY2(result.errors.startsWith(u"a%1.csv:1: error: "_s), qPrintable(result.errors));
    QVERIFY2(result.output.contains(u"p%1 from track 3 "_s), qPrintable(result.output));
    QCOMPARE(result.status, STATUS_ERRORS);
}

void RehearseTest::AFileThatIsMissingIsNamed()
{
    QCOMPARE(Run(QDir::rootPath(), {u"no/such.csv"_s}),
             (Outcome{STATUS_FAILED, {}, u"ozna-schedule: no/such.csv: No such file or directory\n"_s}));
}

void RehearseTest::AMomentThatIsNoneIsNamed_data()
{
    QTest::addColumn<QString>("moment");
    for (const char* moment : {"tomorrow", "2024-02-30", "2024-02-29T25:00", "2024-02-29T08:30:61", "2024-02-29X08:30",
                               "24-02-29", "2024-02-29T", "2024-02-29T8:30", "0001-01-01"})
        QTest::addRow("%s", moment) << QString::fromLatin1(moment);
}

void RehearseTest::AMomentThatIsNoneIsNamed()
{
    QFETCH(const QString, moment);
    const Outcome outcome = Run(DATA + u"/risk"_s, {SCHEDULE, u"--from"_s, moment});
    QCOMPARE(outcome.errors, u"ozna-schedule: --from: a moment like 2024-05-15 or 2024-05-15T08:30:00 is expected, not "
                             "\"%1\"\n"_s.arg(moment));
    QCOMPARE(outcome.status, STATUS_FAILED);
}

OZNA_CASE(Rehearse, RehearseTest)
#include "tst_Rehearse.moc"
