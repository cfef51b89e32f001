#include "Browser.h"
#include "FullWeek.h"
#include "PageScripts.h"
#include "PageTest.h"
#include "Rows.h"
#include "SizeScripts.h"
#include "Suite.h"
#include "ToolScripts.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

constexpr int DAYS = 7;
const char* const START = "2024-03-28T09:05:20";

struct Width
{
    const char* name;
    Browser::Look look;
};

const QList<Width> WIDTHS{
    {"wide", Browser::Look::WIDE}, {"middle", Browser::Look::MIDDLE}, {"phone", Browser::Look::PHONE}};
const QList<Width> COLUMNS{{"wide", Browser::Look::WIDE}, {"middle", Browser::Look::MIDDLE}};

} // namespace

// How a page fits into windows of several widths.
class HtmlSizeTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void NothingIsCut_data() { AddRows(WIDTHS); }
    void NothingIsCut();
    void ALongPathIsNotCut_data() { AddRows(WIDTHS); }
    void ALongPathIsNotCut();
    void WhatClosesTheDetailsCoversNothing_data() { AddRows(WIDTHS); }
    void WhatClosesTheDetailsCoversNothing();
    void TheSameTimeStandsAtTheSameHeight_data() { AddRows(COLUMNS); }
    void TheSameTimeStandsAtTheSameHeight();
    void AShortEntryTakesOneRow_data() { AddRows(COLUMNS); }
    void AShortEntryTakesOneRow();
    void AWideColumnSavesTheRowOfANarrowOne();
    void ThePointerFindsItsHourInColumnsOfAnyWidth();
    void BarsAndStripsAreExplained();

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
    m_browser->Open(PageTest(FULL_WEEK, DAYS, START).Page(), Row<Width>().look);
    QCOMPARE(m_browser->Run(SizeScripts::CUT), u"many parts, cut: none"_s);
    QCOMPARE(m_browser->Console(), QStringList());
}

void HtmlSizeTest::ALongPathIsNotCut()
{
    // A browser need not break it behind a "/". Bars beside it leave little room.
    QByteArray lines = "1111111|18:30:10|*|*|*|||enableAux|1\n"
                       "1111111|19:30:00|*|*|*|||enableAux|0\n"
                       "0000001|22:30:00|*|*|*|||PlayStream|8554/night\n";
    for (int i = 0; i < 28; ++i)
        lines += "0010000|" + QTime(6, 0).addSecs(i * 1500).toString(u"HH:mm:ss"_s).toLatin1() +
                 "|*|*|*|||PlayStream|8554/a/very/long/path/of/the/stream/of/the/assembly" + QByteArray(i % 9, 'y') +
                 ".ogg\n";
    m_browser->Open(PageTest(lines, DAYS).Page(), Row<Width>().look);
    const QString told = m_browser->Run(SizeScripts::CUT);
    QVERIFY2(told.endsWith(", cut: none"_L1), qPrintable(told));
}

void HtmlSizeTest::WhatClosesTheDetailsCoversNothing()
{
    m_browser->Open(PageTest(FULL_WEEK, DAYS, START).Page(), Row<Width>().look);
    QCOMPARE(m_browser->Run(SizeScripts::CLOSING), u"shown, 0 covered"_s);
}

void HtmlSizeTest::TheSameTimeStandsAtTheSameHeight()
{
    m_browser->Open(PageTest(FULL_WEEK, DAYS, START).Page(), Row<Width>().look);
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

void HtmlSizeTest::AWideColumnSavesTheRowOfANarrowOne()
{
    // Beside other entries and bars, on several days.
    const QByteArray page = PageTest("1111111|09:30:10|*|*|*|||Volume|45\n"
                                     "0101000|09:40:10|*|*|*|||Volume|55\n"
                                     "1111111|10:00:00|*|*|*|||PlayRadioFm|98.5\n"
                                     "1111111|11:00:00|*|*|*|||StopRadioFm\n"
                                     "0010000|11:20:10|*|*|*|||Volume|40\n",
                                     DAYS)
                                .Page();
    const QList<QPair<Browser::Look, QString>> rows{{Browser::Look::WIDE, u"1.0"_s},
                                                    {Browser::Look::MIDDLE, u"1.0 2.0"_s}};
    for (const auto& [look, taken] : rows)
    {
        m_browser->Open(page, look);
        QCOMPARE(m_browser->Run(SizeScripts::ROWS_TAKEN), taken);
        const QString cut = m_browser->Run(SizeScripts::CUT);
        QVERIFY2(cut.endsWith(", cut: none"_L1), qPrintable(cut));
        const QString heights = m_browser->Run(SizeScripts::HEIGHTS);
        QVERIFY2(heights.endsWith("at several heights: none"_L1), qPrintable(heights));
        QCOMPARE(m_browser->Run(PageScripts::OVERLAPS).section(u", "_s, 1), u"0 covered"_s);
    }
}

void HtmlSizeTest::ThePointerFindsItsHourInColumnsOfAnyWidth()
{
    // The hours below are higher where columns are narrow.
    const QByteArray page = PageTest("1111111|07:30:10|*|*|*|||Volume|45\n"
                                     "1111111|08:30:10|*|*|*|||Volume|55\n"
                                     "1111111|09:30:10|*|*|*|||Volume|65\n",
                                     DAYS)
                                .Page();
    for (const Width& width : COLUMNS)
    {
        m_browser->Open(page, width.look);
        QCOMPARE(m_browser->Run(ToolScripts::POINT_AT + QByteArray("pointAt(1, 10);")), QString());
        QCOMPARE(m_browser->Run(ToolScripts::IN_FORCE),
                 u"In force on Sat 30 March at 10: 65.0, not set yet, off, nothing"_s);
    }
}

void HtmlSizeTest::BarsAndStripsAreExplained()
{
    const QByteArray page = PageTest(FULL_WEEK, DAYS, START).Page();
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
    QVERIFY(!PageTest("1111111|08:00:00|*|*|*|||Volume|10\n", 1).Page().contains("class=\"key\""));
}

OZNA_CASE(HtmlSize, HtmlSizeTest)
#include "tst_HtmlSize.moc"
