#include "CommandCall.h"
#include "Suite.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

// What Ctrl-C leaves says up to where it is complete.
class InterruptedTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void WhatIsCutSaysSo_data();
    void WhatIsCutSaysSo();
    void WhatIsNotCutSaysNothing();
    void HalfAComparisonIsNotShown();
    void ACutPageTakesNoOthersPlace();

private:
    // Runs the tool until it is interrupted in the middle of a rehearsal.
    CommandCall::Result Interrupt(const QString& arguments) const;

    const CommandCall m_call;
};

namespace
{

constexpr int INTERRUPTED = 130;
constexpr int DEADLINE_MS = 40000;
constexpr int AT_WORK_MS = 1500; // after which the rehearsal has begun for sure

} // namespace

void InterruptedTest::initTestCase()
{
    // A photo a second for sixty years takes far longer than a test may, and is no event.
    const QByteArray lines = "1111111|08:30:00|*|*|*|||Volume|5\n"
                             "1111111|00:00:10|*|*|*|||RecordPhoto|1,2000000000\n";
    m_call.Write(u"long.csv"_s, lines);
    m_call.Write(u"later.csv"_s, "1111111|08:30:00|*|*|*|||Volume|5\n"
                                 "0000000|00:00:10|16|5|2024|||RecordPhoto|1,2000000000\n");
    // What has to be rehearsed before the span that is wanted takes as long.
    m_call.Write(u"early.csv"_s, lines + "1111111|08:00:00|*|*|*|20180101||PlayStream|1/a\n");
}

CommandCall::Result InterruptedTest::Interrupt(const QString& arguments) const
{
    QProcess process;
    process.setWorkingDirectory(m_call.Folder());
    process.start(QStringLiteral(OZNA_TOOL), (arguments + u" --tz UTC"_s).split(u' ', Qt::SkipEmptyParts));
    if (!process.waitForStarted(DEADLINE_MS) || process.waitForFinished(AT_WORK_MS))
        return {};
    if (::kill(static_cast<pid_t>(process.processId()), SIGINT) != 0 || !process.waitForFinished(DEADLINE_MS))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}

void InterruptedTest::WhatIsCutSaysSo_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("output"); // a pattern; %1: the moment as it is told, %2: the same for machines
    QTest::addColumn<bool>("hasMoment");

    const QString longOne = u" long.csv --start-at 2024-05-15 --days 36600"_s;
    const QString early = u" early.csv --from 2024-05-15"_s;
    QTest::newRow("text") << u"rehearse"_s + longOne
                          << u"^Wed 2024-05-15\n.* to %1: .* requests\ninterrupted: complete until %1\n$"_s << true;
    QTest::newRow("json") << u"rehearse --json"_s + longOne
                          << u"^\\{.*\n    \"interrupted\": true,\n.*\"until\": \"%2\\+00:00\"\n\\}\n$"_s << true;
    QTest::newRow("csv") << u"rehearse --csv"_s + longOne
                         << u"^time,due,.*\r\n%2\\+00:00,,,,interrupted,interrupted: complete until %1,,,\r\n$"_s
                         << true;
    QTest::newRow("page") << u"rehearse --html -"_s + longOne
                          << u"^<!DOCTYPE.*<p class=\"cut\"><bdi>interrupted: complete until %1</bdi></p>.*</html>\n$"_s
                          << true;
    QTest::newRow("calendar")
        << u"rehearse --ics"_s + longOne
        << u"^BEGIN:VCALENDAR\r\n.*SUMMARY:Schedule incomplete from here on\r\nDESCRIPTION:interrupted: complete "
           "until %1\r\n.*END:VCALENDAR\r\n$"_s
        << true;
    QTest::newRow("next") << u"next later.csv --from 2024-05-15 -n 10000"_s
                          << u"^Wed 2024-05-15 08:30:00 .*only .* to %1\ninterrupted: complete until %1\n$"_s << true;

    for (const auto* const form : {"", "--json ", "--csv ", "--html - ", "--ics "})
        QTest::addRow("before the beginning %s", form)
            << u"rehearse "_s + QLatin1String(form) + early << u"^$"_s << false;
    QTest::newRow("before the beginning of next") << u"next"_s + early << u"^$"_s << false;
    QTest::newRow("before the beginning of next --json") << u"next --json"_s + early << u"^$"_s << false;
}

void InterruptedTest::WhatIsCutSaysSo()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, output);
    QFETCH(const bool, hasMoment);
    const CommandCall::Result result = Interrupt(arguments);
    QCOMPARE(result.status, INTERRUPTED);
    static const QRegularExpression TOLD(
        u"^(long|later|early)\\.csv: interrupted(: complete until ([A-Z][a-z]{2} ([-0-9]{10}) ([:0-9]{8}))| before its "
        "beginning: nothing is shown)\n$"_s);
    const QRegularExpressionMatch told = TOLD.match(result.errors);
    QVERIFY2(told.hasMatch(), qPrintable(result.errors));
    QCOMPARE(told.hasCaptured(3), hasMoment);
    const QString pattern =
        QString(output).replace(u"%1"_s, told.captured(3)).replace(u"%2"_s, told.captured(4) + u'T' + told.captured(5));
    QVERIFY2(
        QRegularExpression(pattern, QRegularExpression::DotMatchesEverythingOption).match(result.output).hasMatch(),
        qPrintable(result.output.right(500)));
}

void InterruptedTest::WhatIsNotCutSaysNothing()
{
    const CommandCall::Result result = m_call.Run("rehearse --json long.csv --from 2024-05-15 --tz UTC");
    QCOMPARE(result.status, 0);
    QCOMPARE(QJsonDocument::fromJson(result.output.toUtf8())[u"interrupted"_s], QJsonValue(false));
    QCOMPARE(m_call.Run("rehearse --csv long.csv --from 2024-05-15 --tz UTC").output.count(u"interrupted"_s), 0);
}

void InterruptedTest::HalfAComparisonIsNotShown()
{
    QCOMPARE(Interrupt(u"diff later.csv long.csv --from 2024-05-15 --days 36600"_s),
             (CommandCall::Result{INTERRUPTED, {}, u"interrupted: nothing is shown\n"_s}));
}

void InterruptedTest::ACutPageTakesNoOthersPlace()
{
    const QString arguments = u"rehearse long.csv --start-at 2024-05-15 --days 36600 --html page.html"_s;
    const auto content = [this] {
        QFile file(m_call.Folder() + u"/page.html"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QCOMPARE(Interrupt(arguments).status, INTERRUPTED);
    QVERIFY(content().contains("interrupted: complete until "));
    m_call.Write(u"page.html"_s, "a whole page");
    const CommandCall::Result result = Interrupt(arguments);
    QCOMPARE(result.status, INTERRUPTED);
    QVERIFY2(result.errors.endsWith("\npage.html: left as it was\n"_L1), qPrintable(result.errors));
    QCOMPARE(content(), QByteArray("a whole page"));
}

OZNA_CASE(Interrupted, InterruptedTest)
#include "tst_Interrupted.moc"
