#include "CommandCall.h"
#include "Suite.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int CLEAN = 0;
constexpr int FAILED = 3;

using Outcome = CommandCall::Result;

} // namespace

// The option --html of the program as its users run it.
class HtmlOptionTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void ThePageOfAWeekIsWritten();
    void DaysMayBeTold();
    void LinesThatDoNotStartAreListed();
    void WhatComesByChanceIsMarked();
    void ADashIsStandardOutput();
    void APageThatCannotBeWrittenIsTold();
    void WhatStoodThereIsReplacedWhole();
    void TooLargeAPageIsRefused_data();
    void TooLargeAPageIsRefused();
    void WhatIsNoPageIsLeftAlone();
    void OneFormAtATime();
    void TheHelpFitsAScreen();

private:
    Outcome Rehearse(const QStringList& options) const;
    QByteArray Content(const QString& name) const;

    const CommandCall m_call;
};

void HtmlOptionTest::initTestCase()
{
    m_call.Write(u"week.csv"_s, "1111111|08:30:00|*|*|*|||Volume|5\n");
}

Outcome HtmlOptionTest::Rehearse(const QStringList& options) const
{
    return m_call.Run(
        QStringList{u"rehearse"_s, u"week.csv"_s, u"--from"_s, u"2024-05-15"_s, u"--tz"_s, u"Europe/Rome"_s} + options);
}

QByteArray HtmlOptionTest::Content(const QString& name) const
{
    QFile file(m_call.Folder() + u'/' + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void HtmlOptionTest::ThePageOfAWeekIsWritten()
{
    QCOMPARE(Rehearse({u"--html"_s, u"page.html"_s}), (Outcome{CLEAN, u"page.html: 7 days, 7 events\n"_s, {}}));
    QCOMPARE(Rehearse({u"--html"_s, u"day.html"_s, u"--days"_s, u"1"_s}),
             (Outcome{CLEAN, u"day.html: 1 day, 1 event\n"_s, {}}));
    const QByteArray page = Content(u"page.html"_s);
    QVERIFY(page.startsWith("<!DOCTYPE html>"));
    QVERIFY(page.endsWith("</html>\n"));
    QCOMPARE(page.count("data-event=\""), 7);
    QVERIFY(page.contains("Wed 15 May to Tue 21 May 2024"));
    QVERIFY(page.contains("Europe/Rome"));
}

void HtmlOptionTest::DaysMayBeTold()
{
    const Outcome outcome = Rehearse({u"--html"_s, u"-"_s, u"--days"_s, u"9"_s});
    QCOMPARE(outcome.status, CLEAN);
    QCOMPARE(outcome.output.count("data-event=\""_L1), 9);
    QVERIFY(outcome.output.contains("href=\"#week-2\""_L1));
}

void HtmlOptionTest::LinesThatDoNotStartAreListed()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "1111111|24:00:00|*|*|*|||Volume|5\n0000000|08:00:00|25|12|*|||Volume|5\n"
                           "1111111|08:00:00|*|*|*|||Volume|5 # later\n1111111|08:00:00|*|*|*|||Volume|5\n");
    const Outcome outcome = call.Run("rehearse s.csv --html - --from 2024-05-15");
    QVERIFY(outcome.output.contains("<ul><li>Line 1 never starts</li><li>Line 3 is a comment, as there is a "
                                    "&quot;#&quot; in it</li><li>Not due in this time: line 2</li></ul>"_L1));
    QVERIFY(!Rehearse({u"--html"_s, u"-"_s}).output.contains("do not start at their time"_L1));

    call.Write(u"s.csv"_s, "0000010|08:00:00|*|*|*|||Light|40\n1111111|20:00:00|*|*|*|||Light|0\n");
    QVERIFY(call.Run("rehearse s.csv --html - --from 2024-05-15")
                .output.contains("<h2>What a load at another moment would start too early</h2>\n<ul><li>Line 1: "
                                 "a load on another day, from 08:00:00 to 20:00:00, starts it at 00:00:00 on Sat "
                                 "2024-05-18, 8 h early</li></ul>"_L1));
}

void HtmlOptionTest::WhatComesByChanceIsMarked()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "1111111|00:00:01|*|*|*|||Volume|5\n");
    const QString page = call.Run("rehearse s.csv --html - --from 2024-05-15 --tz UTC").output;
    QCOMPARE(page.count("class=\"badge by chance\">by chance</span>"_L1), 15);
    QVERIFY(page.contains("7 times: comes only if the daemon was started at the right moment"_L1));
}

void HtmlOptionTest::ADashIsStandardOutput()
{
    const QString output = Rehearse({u"--html"_s, u"-"_s}).output;
    QCOMPARE(Rehearse({u"--html"_s, u"same.html"_s}).status, CLEAN);
    QCOMPARE(output.toUtf8(), Content(u"same.html"_s));
    QVERIFY(!QDir(m_call.Folder()).exists(u"-"_s));
}

void HtmlOptionTest::APageThatCannotBeWrittenIsTold()
{
    const Outcome outcome = Rehearse({u"--html"_s, u"nowhere/page.html"_s});
    QCOMPARE(outcome.status, FAILED);
    QVERIFY2(outcome.errors.startsWith("ozna-schedule: nowhere/page.html: "_L1), qPrintable(outcome.errors));
}

void HtmlOptionTest::WhatStoodThereIsReplacedWhole()
{
    const QString name = u"old.html"_s;
    QFile file(m_call.Folder() + u'/' + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(QByteArray(1 << 20, 'x')) > 0);
    file.close();
    QCOMPARE(Rehearse({u"--html"_s, name}).status, CLEAN);
    QVERIFY(Content(name).endsWith("</html>\n"));
    QCOMPARE(QDir(m_call.Folder()).entryList({u"old.html*"_s}), QStringList{name});
}

void HtmlOptionTest::TooLargeAPageIsRefused_data()
{
    QTest::addColumn<int>("letters"); // of a file's name, which stands three times with each event
    QTest::addColumn<bool>("isRefused");

    QTest::newRow("not quite") << 500 << false;
    QTest::newRow("too large") << 1500 << true;
}

void HtmlOptionTest::TooLargeAPageIsRefused()
{
    QFETCH(const int, letters);
    QFETCH(const bool, isRefused);
    constexpr int LINES = 400;
    constexpr qint64 MOST_BYTES = 20'000'000;
    QByteArray lines;
    for (int i = 0; i < LINES; ++i)
        lines += "1111111|" + QTime(6, 0).addSecs(60 * i).toString(u"HH:mm:ss"_s).toLatin1() + "|*|*|*|||PlayMessage|" +
                 QByteArray(letters, 'a') + ".mp3\n";
    m_call.Write(u"large.csv"_s, lines);
    m_call.Write(u"large.html"_s, "old");
    const auto run = [&](const QString& page) {
        return m_call.Run(
            {u"rehearse"_s, u"large.csv"_s, u"--from"_s, u"2024-05-15"_s, u"--days"_s, u"10"_s, u"--html"_s, page});
    };
    const Outcome outcome = run(u"large.html"_s);
    QCOMPARE(outcome.status, isRefused ? FAILED : CLEAN);
    QCOMPARE(Content(u"large.html"_s) == "old", isRefused);
    if (!isRefused)
    {
        const qint64 size = Content(u"large.html"_s).size();
        QVERIFY2(size > MOST_BYTES / 3 && size <= MOST_BYTES, qPrintable(QString::number(size)));
        return;
    }
    QCOMPARE(outcome.errors,
             u"ozna-schedule: the page would be larger than 20 MB: ask for fewer --days, or for --csv\n"_s);
    QCOMPARE(run(u"-"_s).output, QString());
}

void HtmlOptionTest::WhatIsNoPageIsLeftAlone()
{
    const QString pipe = m_call.Folder() + u"/pipe"_s;
    QCOMPARE(::mkfifo(qPrintable(pipe), S_IRUSR | S_IWUSR), 0);
    QCOMPARE(Rehearse({u"--html"_s, u"pipe"_s}),
             (Outcome{FAILED, {}, u"ozna-schedule: --html: pipe is not a file\n"_s}));
    struct stat status
    {
    };
    QCOMPARE(::stat(qPrintable(pipe), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));

    const QByteArray schedule = Content(u"week.csv"_s);
    const Outcome outcome = Rehearse({u"--html"_s, u"../%1/week.csv"_s.arg(QDir(m_call.Folder()).dirName())});
    QVERIFY2(outcome.errors.endsWith("/week.csv is the schedule itself\n"_L1), qPrintable(outcome.errors));
    QCOMPARE(outcome.status, FAILED);
    QCOMPARE(Content(u"week.csv"_s), schedule);
}

void HtmlOptionTest::OneFormAtATime()
{
    for (const QString& other : {u"--json"_s, u"--csv"_s, u"--ics"_s})
    {
        const Outcome outcome = Rehearse({u"--html"_s, u"none.html"_s, other});
        QCOMPARE(outcome.status, FAILED);
        QVERIFY2(outcome.errors.contains("exclude each other"_L1), qPrintable(other));
        QVERIFY(!QDir(m_call.Folder()).exists(u"none.html"_s));
    }
}

void HtmlOptionTest::TheHelpFitsAScreen()
{
    const QStringList lines = Rehearse({u"--help"_s}).output.split(u'\n');
    QVERIFY2(lines.size() > 10 && lines.size() <= 24, qPrintable(QString::number(lines.size())));
    for (const QString& line : lines)
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

OZNA_CASE(HtmlOption, HtmlOptionTest)
#include "tst_HtmlOption.moc"
