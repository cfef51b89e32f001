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

OZNA_CASE(CheckOutput, CheckOutputTest)
#include "tst_CheckOutput.moc"
