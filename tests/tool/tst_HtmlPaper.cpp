#include "Browser.h"
#include "FullWeek.h"
#include "PageTest.h"
#include "Rows.h"
#include "SizeScripts.h"
#include "Suite.h"

#include <QRegularExpression>
#include <QTest>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr int DAYS = 7;

// Upright, in inches.
struct Paper
{
    double width;
    double height;
};

constexpr std::array PAPERS{Paper{8.27, 11.69}, Paper{8.5, 11}};

struct Printing
{
    const char* name;
    QByteArray lines;
    int days;
    int sheets; // with one for what the check has found, if that is anything
};

const QByteArray QUIET = "1111111|08:00:00|*|*|*|||Volume|10\n";

QByteArray Busy(int number)
{
    QByteArray lines;
    for (int i = 0; i < number; ++i)
        lines += "1111111|" + QTime(6, 0).addSecs(i * 400).toString(u"HH:mm:ss"_s).toLatin1() + "|*|*|*|||Volume|" +
                 QByteArray::number(i % 100) + "\n";
    return lines;
}

const QList<Printing> PRINTINGS{
    {"nearly nothing", QUIET, 7, 1},
    {"three days", QUIET, 3, 1},
    {"a week and a day", QUIET, 8, 2},
    {"three weeks", QUIET, 21, 3},
    {"dense days", Busy(90), 7, 1},
    {"everything", FULL_WEEK, 7, 2},
    {"one finding", QUIET + "1111111|24:00:00|*|*|*|||Volume|1\n", 7, 1},
    {"more than fits", Busy(140), 7, 2},
};

} // namespace

// What a page shows on paper.
class HtmlPaperTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void PaperHasEveryEventAndNothingToOperate();
    void PaperTellsEndsForItHasNoBars();
    void PaperTellsWhatGoesOnBeyondTheEnd();
    void PaperHasTheNotes();
    void AWeekIsOneSheetInLandscape_data() { AddRows(PRINTINGS); }
    void AWeekIsOneSheetInLandscape();

private:
    std::unique_ptr<Browser> m_browser;
};

void HtmlPaperTest::initTestCase()
{
    QVERIFY2(!Browser::Program().isEmpty(), "no browser is installed");
    m_browser = std::make_unique<Browser>();
}

void HtmlPaperTest::cleanupTestCase()
{
    m_browser.reset();
}

void HtmlPaperTest::PaperHasEveryEventAndNothingToOperate()
{
    const PageTest test(FULL_WEEK, DAYS + 1);
    m_browser->Open(test.Page(), Browser::Look::PAPER);
    const qsizetype events = test.Events().size();
    QCOMPARE(m_browser->Run(SizeScripts::PRINTED), u"%1 events, 0 others"_s.arg(events));
}

void HtmlPaperTest::PaperTellsEndsForItHasNoBars()
{
    const QByteArray page = PageTest("1111111|09:30:10|*|*|*|||PlayPlaylist|two & <three>,50,pause\n"
                                     "1111111|09:38:00|*|*|*|||StopPlaylist|pause\n"
                                     "1111111|23:50:00|*|*|*|||PlayPlaylist|two & <three>,50\n",
                                     3)
                                .Page();
    // The first plays from the day before, the last beyond the rehearsal; what is carried has its end again.
    const QString ends = u"–00:20:04 –09:38 –Sat 30 March 00:20:04 –Sat 30 March 00:20:04 –09:38 "
                         "–Sun 31 March 00:20:04 –Sun 31 March 00:20:04 –09:38 –Mon 1 April 00:20:04"_s;
    m_browser->Open(page, Browser::Look::PAPER);
    QCOMPARE(m_browser->Run(SizeScripts::ENDS), ends);
    for (const Browser::Look look : {Browser::Look::WIDE, Browser::Look::MIDDLE, Browser::Look::PHONE})
    {
        m_browser->Open(page, look);
        QCOMPARE(m_browser->Run(SizeScripts::ENDS), QString());
    }
}

void HtmlPaperTest::PaperTellsWhatGoesOnBeyondTheEnd()
{
    m_browser->Open(PageTest("0000001|09:30:00|*|*|*|||PlayStream|8554/live\n", 3).Page(), Browser::Look::PAPER);
    QCOMPARE(m_browser->Run(SizeScripts::ENDS), u"–goes on –goes on –goes on"_s);
}

void HtmlPaperTest::PaperHasTheNotes()
{
    // A line that never starts, one that is not due, and one that a load at another moment starts too early.
    const QByteArray page = PageTest(QUIET + "1111111|24:00:00|*|*|*|||Volume|1\n"
                                             "0000000|10:00:00|1|5|*|||Volume|1\n"
                                             "0000010|08:00:00|*|*|*|||Light|5\n"
                                             "0000010|20:00:00|*|*|*|||Light|0\n",
                                     3)
                                .Page();
    for (const Browser::Look look : {Browser::Look::WIDE, Browser::Look::PHONE, Browser::Look::PAPER})
    {
        m_browser->Open(page, look);
        QCOMPARE(m_browser->Run(SizeScripts::NOTES), u"3 notes, 3 shown"_s);
    }
}

void HtmlPaperTest::AWeekIsOneSheetInLandscape()
{
    const auto& [name, lines, days, sheets] = Row<Printing>();
    m_browser->Open(PageTest(lines, days).Page());
    static const QRegularExpression SHEET(u"/Type\\s*/Page\\b"_s);
    static const QRegularExpression SIZE(u"/MediaBox\\s*\\[0 0 ([0-9.]+) ([0-9.]+)\\]"_s);
    for (const Paper& paper : PAPERS)
    {
        const QString document = QString::fromLatin1(m_browser->Print(paper.width, paper.height));
        QCOMPARE(document.count(SHEET), sheets);
        QRegularExpressionMatchIterator sizes = SIZE.globalMatch(document);
        QVERIFY(sizes.hasNext());
        while (sizes.hasNext())
        {
            const QRegularExpressionMatch size = sizes.next();
            QVERIFY2(size.captured(1).toDouble() > size.captured(2).toDouble(), qPrintable(size.captured()));
        }
    }
}

OZNA_CASE(HtmlPaper, HtmlPaperTest)
#include "tst_HtmlPaper.moc"
