#include "CheckRun.h"
#include "CommandCall.h"
#include "Suite.h"
#include "TextDiff.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace Qt::StringLiterals;

class CheckOutputTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void AFindingNamesItsColumn_data();
    void AFindingNamesItsColumn();
    void JsonHasTheSameFindings();
    void NothingThatATerminalObeysIsShown();
    void ALoneDateHasALineForEachMeaning_data();
    void ALoneDateHasALineForEachMeaning();

private:
    // Writes a schedule, and gives its path.
    [[nodiscard]] QString Write(const QByteArray& content) const
    {
        m_call.Write(u"schedule.csv"_s, content);
        return m_call.Folder() + u"/schedule.csv"_s;
    }

    const CommandCall m_call;
};

void CheckOutputTest::AFindingNamesItsColumn_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("column");

    QTest::newRow("the first field") << "111110|08:30:00|*|*|*|||StopMessage\n"_ba << 1;
    QTest::newRow("a field") << "1111100|8:30:00|*|*|*|||StopMessage\n"_ba << 9;
    QTest::newRow("behind blanks") << " 1111100 |  8:30:00|*|*|*|||StopMessage\n"_ba << 13;
    QTest::newRow("an empty field") << "1111100|08:30:00|*|*|*|||\t|5\n"_ba << 26;
    QTest::newRow("a field that is missing") << "1111100|08:30:00|*|*|*|||PlayStream\n"_ba << 36;
    QTest::newRow("the last field") << "1111100|08:30:00|*|*|*|||Volume|500\n"_ba << 33;
    QTest::newRow("behind a character of two bytes") << "1111100|08:30:00|\xc3\xa4|*|*|||StopMessage\n"_ba << 18;
    QTest::newRow("the whole line") << "1111100\n"_ba << 1;
    QTest::newRow("a character") << "1111100|08:30:00|*|*|*|||PlayMessage|d\xc3\xa4\xe2\x82\xac.mp3\n"_ba << 40;
    QTest::newRow("behind a character of four bytes")
        << "1111100|08:30:00|\xf0\x9f\x94\x94|x|*|||StopMessage\n"_ba << 20;
    QTest::newRow("the sign of a comment") << "1111100|08:30:00|*|*|*|||StopMessage # now\n"_ba << 38;
}

void CheckOutputTest::AFindingNamesItsColumn()
{
    QFETCH(const QByteArray, line);
    QFETCH(const int, column);
    const CheckRun run({Write(line)});
    QVERIFY2(!run.Lines().filter(u"schedule.csv:1:%1: "_s.arg(column)).isEmpty(), run.output.constData());
}

void CheckOutputTest::JsonHasTheSameFindings()
{
    const QString file = Write("1111100|08:30:00|*|*|*|||StopMessage\n"
                               "1111100|8:30:00|*|*|*|||StopMessage\n"
                               "1111100|08:30|*|*|*|||StopMessage\n");
    const CheckRun run({file, u"--json"_s});
    const QJsonObject object = QJsonDocument::fromJson(run.output).object();
    QCOMPARE(object.value(u"file").toString(), file);
    QCOMPARE(object.value(u"lines").toInt(), 3);
    QCOMPARE(object.value(u"errors").toInt(), 1);
    QCOMPARE(object.value(u"warnings").toInt(), 1);

    QStringList lines;
    const QJsonArray findings = object.value(u"findings").toArray();
    for (const QJsonValue& finding : findings)
    {
        const QString logged = finding[u"logged"].toString();
        lines.append(u"%1:%2:%3: %4: %5: %6; %7%8 [%9]"_s.arg(file)
                         .arg(finding[u"line"].toInt())
                         .arg(finding[u"column"].toInt())
                         .arg(finding[u"severity"].toString(), finding[u"field"].toString(),
                              finding[u"text"].toString(), finding[u"advice"].toString(),
                              logged.isEmpty() ? QString() : u" (the daemon logs \"%1\")"_s.arg(logged),
                              finding[u"kind"].toString()));
    }
    lines.append(u"3 lines, 1 error, 1 warning"_s);
    const QByteArray difference = TextDiff(lines, CheckRun({file}).Lines(), "finding");
    QVERIFY2(difference.isEmpty(), difference.constData());
}

void CheckOutputTest::NothingThatATerminalObeysIsShown()
{
    const CheckRun run({Write("1111100|08:30:00|*|*|*|||Volume|\x1b[2Jloud\n"
                              "1111100|\x1b]0;title\x07|*|*|*|||Volume|5\n"
                              "1111100|08:30:00|\x1b[31m|*|*|||StopMessage\n")});
    QCOMPARE(run.status, 2);
    QVERIFY(run.output.contains("\\x1b[2Jloud"));
    for (const char byte : run.output)
        QVERIFY2(byte == '\n' || static_cast<unsigned char>(byte) >= ' ', run.output.constData());
}

void CheckOutputTest::ALoneDateHasALineForEachMeaning_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("between the right signs") << "1111100|08:30:00|25.12.2026|Volume|30\n"_ba;
    QTest::newRow("beside days of which one is missing") << "111110|08:30:00|25.12.2026|Volume|30\n"_ba;
    QTest::newRow("as a spreadsheet has it") << "Mon-Fri;8:30;25.12.2026;Volume;30\n"_ba;
}

void CheckOutputTest::ALoneDateHasALineForEachMeaning()
{
    QFETCH(const QByteArray, line);
    const QString path = Write(line);
    const QString finding = m_call.Run({u"check"_s, path}).output;
    static const QRegularExpression ADVICE(
        u"; write (\\S+) for that day alone, or (\\S+) for the marked days from then on "_s);
    const auto advice = ADVICE.match(finding);
    QVERIFY2(advice.hasMatch(), qPrintable(finding));
    QCOMPARE(m_call.Run({u"explain"_s, advice.captured(1), advice.captured(2)}).output,
             u"On 25 December 2026 (the date in UTC) at 08:30:00, set the master volume to 30.\n"
             "On Mondays to Fridays at 08:30:00, from 25 December 2026 on, set the master volume to 30.\n"_s);
    // Nobody can tell which of the two is meant.
    const QJsonDocument json = QJsonDocument::fromJson(m_call.Run({u"check"_s, path, u"--json"_s}).output.toUtf8());
    QVERIFY(json[u"findings"][0].isObject() && !json[u"findings"][0][u"suggestion"].isString());
}

OZNA_CASE(CheckOutput, CheckOutputTest)
#include "tst_CheckOutput.moc"
