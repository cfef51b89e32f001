#include "Browser.h"
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

// A week with dense hours, long names, playlists at once, and everything that can be marked.
const QByteArray WEEK =
    "1111100|07:00:00|*|*|*|||Light|80\n"
    "1111100|07:00:00|*|*|*|||8|15\n"
    "1111100|07:00:00|*|*|*|||Volume|45\n"
    "1111100|07:00:00|*|*|*|||Lan|1\n"
    "1111100|07:15:00|*|*|*|||PlayRadioFm|98.5\n"
    "1111100|07:45:00|*|*|*|||StopRadioFm\n"
    "1111100|08:00:00|*|*|*|||PlayMessage|lesson-begins-with-a-long-name.mp3,70\n"
    "1111100|08:45:00|*|*|*|||PlayMessage|gong.mp3,70\n"
    "0100000|08:10:00|*|*|*|||Volume|50\n"
    "0100000|08:11:00|*|*|*|||Volume|60\n"
    "0100000|08:12:00|*|*|*|||PlayMessage|a message of the headmistress to all parents.mp3\n"
    "1111100|09:00:00|*|*|*|||PlayPlaylist|two & <three>,50,break\n"
    "1111100|09:00:05|*|*|*|||StopPlaylist|break\n"
    "1111100|09:05:00|*|*|*|||PlayPlaylist|two & <three>,50,second\n"
    "0000111|09:05:00|*|*|*|||PlayPlaylist|two & <three>,50,third\n"
    "0000111|09:06:00|*|*|*|||PlayPlaylist|two & <three>,50,fourth\n"
    "0000111|09:07:00|*|*|*|||PlayStream|8554/live,60\n"
    "0000111|09:40:00|*|*|*|||StopStream\n"
    "1111100|09:30:00|*|*|*|||StopPlaylist|second\n"
    "0010000|11:00:00|*|*|*|||PlayStream|8554/a/very/long/path/of/the/stream/of/the/assembly.ogg,60\n"
    "0010000|11:40:00|*|*|*|||StopStream\n"
    "0010000|12:00:00|*|*|*|||RecordPhoto|5,3\n"
    "1111111|00:00:00|*|*|*|||Volume|10\n"
    "1111111|02:30:00|*|*|*|||Volume|15\n"
    "1111111|10:00:05|*|*|*|||PlayPlaylist|two & <three>,50,cut\n"
    "1111111|10:00:06|*|*|*|||StopPlaylist|cut\n"
    "1111111|18:30:00|*|*|*|||enableAux|1\n"
    "1111111|19:30:00|*|*|*|||enableAux|0\n";

constexpr int DAYS = 7;
const char* const START = "2024-03-28T09:05:20";

// Upright, in inches.
struct Paper
{
    double width;
    double height;
};

constexpr std::array PAPERS{Paper{8.27, 11.69}, Paper{8.5, 11}};

struct Width
{
    const char* name;
    Browser::Look look;
};

const QList<Width> WIDTHS{
    {"wide", Browser::Look::WIDE}, {"middle", Browser::Look::MIDDLE}, {"phone", Browser::Look::PHONE}};
const QList<Width> COLUMNS{{"wide", Browser::Look::WIDE}, {"middle", Browser::Look::MIDDLE}};

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
    {"everything", WEEK, 7, 2},
    {"one finding", QUIET + "1111111|24:00:00|*|*|*|||Volume|1\n", 7, 1},
    {"more than fits", Busy(140), 7, 2},
};

} // namespace

// How a page fits into windows of several widths, and onto paper.
class HtmlSizeTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void NothingIsCut_data() { AddRows(WIDTHS); }
    void NothingIsCut();
    void WhatClosesTheDetailsCoversNothing_data() { AddRows(WIDTHS); }
    void WhatClosesTheDetailsCoversNothing();
    void TheSameTimeStandsAtTheSameHeight_data() { AddRows(COLUMNS); }
    void TheSameTimeStandsAtTheSameHeight();
    void AShortEntryTakesOneRow_data() { AddRows(COLUMNS); }
    void AShortEntryTakesOneRow();
    void PaperHasEveryEventAndNothingToOperate();
    void PaperTellsEndsForItHasNoBars();
    void BarsAndStripsAreExplained();
    void AWeekIsOneSheetInLandscape_data() { AddRows(PRINTINGS); }
    void AWeekIsOneSheetInLandscape();

private:
    std::unique_ptr<Browser> m_browser;
};

void HtmlSizeTest::initTestCase()
{
    QVERIFY2(!Browser::Program().isEmpty(), "no browser is installed");
    m_browser = std::make_unique<Browser>();
}

void HtmlSizeTest::cleanupTestCase()
{
    m_browser.reset();
}

void HtmlSizeTest::NothingIsCut()
{
    m_browser->Open(PageTest(WEEK, DAYS, START).Page(), Row<Width>().look);
    QCOMPARE(m_browser->Run(SizeScripts::CUT), u"many parts, cut: none"_s);
    QCOMPARE(m_browser->Console(), QStringList());
}

void HtmlSizeTest::WhatClosesTheDetailsCoversNothing()
{
    m_browser->Open(PageTest(WEEK, DAYS, START).Page(), Row<Width>().look);
    QCOMPARE(m_browser->Run(SizeScripts::CLOSING), u"shown, 0 covered"_s);
}

void HtmlSizeTest::TheSameTimeStandsAtTheSameHeight()
{
    m_browser->Open(PageTest(WEEK, DAYS, START).Page(), Row<Width>().look);
    const QString told = m_browser->Run(SizeScripts::HEIGHTS);
    QVERIFY2(told.endsWith("at several heights: none"_L1), qPrintable(told));
    QVERIFY2(!told.startsWith("0 "_L1), qPrintable(told));
}

void HtmlSizeTest::AShortEntryTakesOneRow()
{
    const QByteArray page = PageTest("1111111|09:30:00|*|*|*|||Volume|40\n"
                                     "1111111|11:20:00|*|*|*|||Volume|45\n",
                                     DAYS)
                                .Page();
    QCOMPARE(page.count(";--height:1\""), 2 * DAYS);
    m_browser->Open(page, Row<Width>().look);
    const QString told = m_browser->Run(SizeScripts::CUT);
    QVERIFY2(told.endsWith(", cut: none"_L1), qPrintable(told));
}

void HtmlSizeTest::PaperHasEveryEventAndNothingToOperate()
{
    const PageTest test(WEEK, DAYS + 1);
    m_browser->Open(test.Page(), Browser::Look::PAPER);
    const qsizetype events = test.Events().size();
    QCOMPARE(m_browser->Run(SizeScripts::PRINTED), u"%1 events, 0 others"_s.arg(events));
}

void HtmlSizeTest::PaperTellsEndsForItHasNoBars()
{
    const QByteArray page = PageTest("1111111|09:30:10|*|*|*|||PlayPlaylist|two & <three>,50,pause\n"
                                     "1111111|09:38:00|*|*|*|||StopPlaylist|pause\n"
                                     "1111111|23:50:00|*|*|*|||PlayPlaylist|two & <three>,50\n",
                                     3)
                                .Page();
    // The first plays from the day before, the last beyond the rehearsal; what is carried has its end again.
    const QString ends = u"–00:20:04 –09:38 –Sat 30 March 00:20:04 –Sat 30 March 00:20:04 –09:38 "
                         "–Sun 31 March 00:20:04 –Sun 31 March 00:20:04 –09:38 –open end"_s;
    m_browser->Open(page, Browser::Look::PAPER);
    QCOMPARE(m_browser->Run(SizeScripts::ENDS), ends);
    for (const Width& width : WIDTHS)
    {
        m_browser->Open(page, width.look);
        QVERIFY2(m_browser->Run(SizeScripts::ENDS).isEmpty(), width.name);
    }
}

void HtmlSizeTest::BarsAndStripsAreExplained()
{
    const QByteArray page = PageTest(WEEK, DAYS, START).Page();
    const QString bar = u"Bar beside the entries: how long it plays."_s;
    const QList<QPair<Browser::Look, QString>> keys{
        {Browser::Look::WIDE, bar},
        {Browser::Look::MIDDLE, bar},
        {Browser::Look::PHONE, u"Strip under an entry: when it plays, in a day from edge to edge."_s},
        {Browser::Look::PAPER, {}},
    };
    for (const auto& [look, key] : keys)
    {
        m_browser->Open(page, look);
        QCOMPARE(m_browser->Run(SizeScripts::KEY), key);
    }
    QVERIFY(!PageTest(QUIET, 1).Page().contains("class=\"key\""));
}

void HtmlSizeTest::AWeekIsOneSheetInLandscape()
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

OZNA_CASE(HtmlSize, HtmlSizeTest)
#include "tst_HtmlSize.moc"
