#include "CommandCall.h"
#include "KindTable.h"
#include "Suite.h"
#include "ToolHelp.h"
#include "check/FindingKind.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

// The manual pages say what the tool does.
class tst_ManPages final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void APageIsRenderedWithoutAWarning_data();
    void APageIsRenderedWithoutAWarning();
    void EveryCommandStandsInThePageAndNoOther();
    void EveryOptionStandsInThePageAndNoOther();
    void EveryKindOfFindingStandsInThePageAndNoOther();
    void EveryExampleRuns();
    void EveryTaskStandsInTheFormatsPage();

private:
    // The page as it is installed.
    static QString Path(const QString& section);
    static QString Page(const char* section);
    // What follows the heading up to the next.
    static QString Section(const QString& page, const QString& heading);
    static QSet<QString> Matches(const QString& text, const char* pattern);
};

QString tst_ManPages::Path(const QString& section)
{
    return section == QLatin1String("5") ? QStringLiteral(OZNA_FORMATS_PAGE)
                                         : QStringLiteral(OZNA_SOURCES "/packaging/man/ozna-schedule.") + section;
}

QString tst_ManPages::Page(const char* section)
{
    QFile file(Path(QString::fromLatin1(section)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // As it is shown, without what steers the form.
    QString text = QString::fromUtf8(file.readAll());
    return text.replace(u"\\-"_s, u"-"_s).replace(u"\\(aq"_s, u"'"_s);
}

QString tst_ManPages::Section(const QString& page, const QString& heading)
{
    const QString begin = u"\n.SH %1\n"_s.arg(heading);
    const qsizetype first = page.indexOf(begin);
    return first < 0 ? QString() : page.mid(first + begin.size()).section(u"\n.SH "_s, 0, 0);
}

QSet<QString> tst_ManPages::Matches(const QString& text, const char* pattern)
{
    const QRegularExpression expression(QLatin1String(pattern), QRegularExpression::MultilineOption);
    QSet<QString> names;
    QRegularExpressionMatchIterator matches = expression.globalMatch(text);
    while (matches.hasNext())
        names.insert(matches.next().captured(1));
    return names;
}

void tst_ManPages::APageIsRenderedWithoutAWarning_data()
{
    QTest::addColumn<QString>("section");

    QTest::newRow("1") << u"1"_s;
    QTest::newRow("5") << u"5"_s;
}

void tst_ManPages::APageIsRenderedWithoutAWarning()
{
    QFETCH(const QString, section);
    const CommandCall call;
    const CommandCall::Result result =
        call.RunProgram(u"groff"_s, {u"-t"_s, u"-man"_s, u"-ww"_s, u"-Tutf8"_s, u"-P-cbou"_s, Path(section)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY(result.output.startsWith(u"OZNA-SCHEDULE(%1)"_s.arg(section)));
    for (const QString& line : result.output.split(u'\n'))
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

void tst_ManPages::EveryCommandStandsInThePageAndNoOther()
{
    const CommandCall call;
    const QStringList commands = ToolHelp::Commands(call);
    QVERIFY(!commands.isEmpty());
    QCOMPARE(Matches(Section(Page("1"), u"COMMANDS"_s), "^\\.BI ([a-z]+) "),
             QSet<QString>(commands.begin(), commands.end()));
}

void tst_ManPages::EveryOptionStandsInThePageAndNoOther()
{
    const CommandCall call;
    QSet<QString> options{u"--help"_s, u"-h"_s};
    for (const QString& command : ToolHelp::Commands(call))
    {
        for (const QString& option : ToolHelp::Options(call, command))
            options.insert(option);
    }
    const QString section = Section(Page("1"), u"OPTIONS"_s);
    QSet<QString> documented = Matches(section, "^\\.TP\n\\.BI? (--?[a-z][a-z-]*)");
    documented += Matches(section, "^\\.TP\n\\.BR (-h)");
    documented += Matches(section, "^\\.TP\n\\.BR -h \", \" (--[a-z]+)");
    QCOMPARE(documented, options);
}

void tst_ManPages::EveryKindOfFindingStandsInThePageAndNoOther()
{
    QStringList rows;
    for (const FindingKindRow& row : FindingKinds::All())
        rows.append(QLatin1String(row.name) + (row.isError ? u"\terror"_s : u"\twarning"_s));
    QCOMPARE(Matches(Section(Page("1"), u"FINDINGS"_s), "^([a-z0-9-]+\t(error|warning))\t"),
             QSet<QString>(rows.begin(), rows.end()));
}

void tst_ManPages::EveryExampleRuns()
{
    const CommandCall call;
    call.Write(u"schedule.csv"_s, "1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3,70\n");
    call.Write(u"new.csv"_s, "1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3,70\n");
    const QSet<QString> examples = Matches(Section(Page("1"), u"EXAMPLES"_s), "^ozna-schedule (.*)$");
    QVERIFY(examples.size() >= 5);
    for (const QString& example : examples)
    {
        const CommandCall::Result result = call.RunProgram(u"sh"_s, {u"-c"_s, QStringLiteral(OZNA_TOOL " ") + example});
        QVERIFY2(result.status == 0 && result.errors.isEmpty(), qPrintable(example + u'\n' + result.errors));
    }
}

void tst_ManPages::EveryTaskStandsInTheFormatsPage()
{
    const CommandCall call;
    const QSet<QString> names = Matches(Section(Page("5"), u"TASKS"_s), "^[0-9]+\t([A-Za-z]+)\t");
    QSet<QString> known;
    for (const KindRow& kind : AllKinds())
    {
        if (*kind.name)
            known.insert(QString::fromLatin1(kind.name));
    }
    QCOMPARE(names, known);
    for (const QString& name : names)
    {
        // A name that the daemon does not know, or that nothing serves, is an unknown task.
        const QString errors = call.Run({u"explain"_s, u"1111111|06:00:00|*|*|*|||%1|1"_s.arg(name)}).errors;
        const bool isRefused = name == "RecordMic"_L1 || name == "RecordVideo"_L1;
        QVERIFY2(isRefused != errors.isEmpty() && !errors.contains("task (99)"_L1), qPrintable(name + u' ' + errors));
    }
}

OZNA_CASE(ManPages, tst_ManPages)
#include "tst_ManPages.moc"
