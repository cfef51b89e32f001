#include "Browser.h"
#include "PageScripts.h"
#include "PageTest.h"
#include "Rows.h"
#include "Suite.h"
#include "TextDiff.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

// A week in March with something of everything.
const QByteArray WEEK = "# a shop\n"
                        "1111111|07:00:00|*|*|*|||PlayRadioFm|98.5\n"
                        "1111111|08:30:00|*|*|*|||PlayMessage|<script>throw 1</script> & more.mp3,70\n"
                        "1111111|08:30:00|*|*|*|||Volume|45\n"
                        "1111111|09:00:00|*|*|*|||PlayPlaylist|two & <three>,50,p1\n"
                        "1111111|09:01:00|*|*|*|||PlayPlaylist|two & <three>,50\n"
                        "1111111|09:12:00|*|*|*|||StopPlaylist|p1\n"
                        "1111111|10:00:00|*|*|*|||PlayPlaylist|two & <three>,50,p2\n"
                        "1111111|10:00:05|*|*|*|||StopPlaylist|p2\n"
                        "1111111|11:00:00|*|*|*|||PlayStream|8554/live\n"
                        "1111111|02:30:00|*|*|*|||Light|5\n"
                        "1111111|02:30:05|*|*|*|||Volume|5\n"
                        "1111111|00:00:00|*|*|*|||Volume|1\n"
                        "1111111|12:00:00|*|*|*|||PlayMessage|\"quoted\" 'é' \x1b[1m.mp3\n"
                        "1111111|12:01:00|*|*|*|||Nothing<i>|1\n"
                        "1111100|19:00:00|*|*|*|||RecordPhoto|5,3\n";

constexpr int MANY = 10000;
constexpr int MANY_DAYS = 14;
constexpr qint64 MANY_DEADLINE_MS = 30000;
constexpr int MOST_STOPS = 8;
constexpr const char* BODY_END = "</body>";

// page with a script at its end.
QByteArray WithScript(QByteArray page, const QByteArray& script)
{
    return page.replace(BODY_END, "<script>" + script + "</script>" + BODY_END);
}

struct Span
{
    const char* name;
    int days;
    const char* start;
    QByteArrayList marks;
};

const QList<Span> SPANS{
    {"running for long", 3, "", {"missed", "playing"}},
    {"loaded in the morning", 8, "2024-03-29T09:13", {"forced", "late", "missed", "skipped"}},
};

struct Looking
{
    const char* name;
    Browser::Look look;
};

constexpr std::array LOOKS{Looking{"light", Browser::Look::WIDE}, Looking{"dark", Browser::Look::DARK},
                           Looking{"phone", Browser::Look::PHONE}, Looking{"paper", Browser::Look::PAPER}};
constexpr std::array WIDTHS{Looking{"wide", Browser::Look::WIDE}, Looking{"middle", Browser::Look::MIDDLE},
                            Looking{"phone", Browser::Look::PHONE}};

} // namespace

class HtmlPageTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void EveryEventIsThereWithItsDetails_data() { AddRows(SPANS); }
    void EveryEventIsThereWithItsDetails();
    void AnErrorOnTheConsoleIsSeen();
    void ThePageLoadsNothing();
    void WhatWouldBeLoadedIsRefused();
    void TextOfTheScheduleIsNoMarkup();
    void DetailsFollowFocusKeysAndPointer();
    void TextIsToldFromItsBackground_data() { AddRows(LOOKS); }
    void TextIsToldFromItsBackground();
    void EntriesOfTheSameSecondDoNotCoverOneAnother_data() { AddRows(WIDTHS); }
    void EntriesOfTheSameSecondDoNotCoverOneAnother();
    void TenThousandEventsAreShown();

private:
    std::unique_ptr<Browser> m_browser;
};

void HtmlPageTest::initTestCase()
{
    QVERIFY2(!Browser::Program().isEmpty(), "no browser is installed");
    m_browser = std::make_unique<Browser>();
}

void HtmlPageTest::cleanupTestCase()
{
    m_browser.reset();
}

void HtmlPageTest::EveryEventIsThereWithItsDetails()
{
    const auto& [name, days, start, marks] = Row<Span>();
    const PageTest test(WEEK, days, start);
    const QStringList expected = test.Events();
    for (const QByteArray& mark : marks)
        QVERIFY2(!expected.filter(u'\t' + QLatin1String(mark) + u'\t').isEmpty(), mark.constData());

    m_browser->Open(test.Page());
    const QStringList found = m_browser->Run(PageScripts::EVENTS).split(u'\n');
    QCOMPARE(m_browser->Console(), QStringList());
    QStringList shown = expected;
    // No terminal's control character reaches the page.
    shown.replaceInStrings(u"\x1b"_s, u"\\x1b"_s);
    QCOMPARE(TextDiff(shown, found, "events"), QByteArray());
}

void HtmlPageTest::AnErrorOnTheConsoleIsSeen()
{
    m_browser->Open(WithScript(PageTest(WEEK, 1).Page(), "throw new Error('deliberate');"));
    QCOMPARE(m_browser->Console().size(), 1);
    QVERIFY2(m_browser->Console()[0].contains("deliberate"_L1), qPrintable(m_browser->Console()[0]));
}

void HtmlPageTest::ThePageLoadsNothing()
{
    const QByteArray page = PageTest(WEEK, 1).Page();
    static const QRegularExpression LOADING(
        u"<(link|img|iframe|object|embed|base|form|audio|video)\\b|\\ssrc=|\\shref=\"[^#]|url\\(|@import|@font-face|"
        "\\bfetch\\(|XMLHttpRequest|WebSocket|\\bimport\\b|sendBeacon"_s);
    const QRegularExpressionMatch match = LOADING.match(QString::fromUtf8(page));
    QVERIFY2(!match.hasMatch(), qPrintable(match.captured()));
    QVERIFY(page.contains("content=\"default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'\""));
    m_browser->Open(page);
    QCOMPARE(m_browser->Run(PageScripts::LOADED), u"0"_s);
}

void HtmlPageTest::WhatWouldBeLoadedIsRefused()
{
    m_browser->Open(
        WithScript(PageTest(WEEK, 1).Page(), "document.body.append(Object.assign(new Image(), { src: 'page.png' }));"));
    QCOMPARE(m_browser->Console().size(), 1);
    QVERIFY2(m_browser->Console()[0].contains("Content Security Policy"_L1), qPrintable(m_browser->Console()[0]));
}

void HtmlPageTest::TextOfTheScheduleIsNoMarkup()
{
    const QByteArray page = PageTest(WEEK, 1).Page();
    QVERIFY(!page.contains("<script>throw"));
    QVERIFY(!page.contains("<three>"));
    QVERIFY(!page.contains("<more>"));
    QVERIFY(!page.contains("Nothing<i>"));
    QVERIFY(!page.contains('\x1b'));
    QVERIFY(page.contains("&lt;script&gt;throw 1&lt;/script&gt; &amp; more.mp3"));
    QVERIFY(page.contains("Nothing&lt;i&gt;"));
}

void HtmlPageTest::DetailsFollowFocusKeysAndPointer()
{
    const PageTest test("1111111|08:00:00|*|*|*|||PlayRadioFm|98.5\n"
                        "1111111|09:00:00|*|*|*|||Volume|1\n"
                        "1111111|10:00:00|*|*|*|||PlayPlaylist|two & <three>\n",
                        2, "2024-03-29T07:00");
    m_browser->Open(test.Page());
    const QString radio = u"Fri 29 March, 08:00:00: Radio 98.5 MHz"_s;
    const QString playlist = u"Fri 29 March, 10:00:00: Playlist two & <three>"_s;
    const QString tomorrow = QString(playlist).replace("Fri 29"_L1, "Sat 30"_L1);
    const QString nothing = u"nothing"_s;
    const QList<QPair<const char*, QString>> steps{
        {"ArrowDown", u"Fri 29 March, 09:00:00: Volume 1.0"_s},
        {"ArrowUp", radio},
        {"ArrowUp", radio},
        {"ArrowLeft", radio},
        {"End", playlist},
        {"ArrowRight", tomorrow},
        {"ArrowLeft", playlist},
        {"Home", radio},
        {"a", radio},
        {"Escape", nothing},
    };
    QCOMPARE(m_browser->Run(PageScripts::SHOWN), nothing);
    // Past the boxes of the filter.
    for (int i = 0; i < MOST_STOPS && m_browser->Run(PageScripts::SHOWN) == nothing; ++i)
        m_browser->Press("Tab");
    QCOMPARE(m_browser->Run(PageScripts::SHOWN), radio);
    for (const auto& [key, shown] : steps)
    {
        m_browser->Press(key);
        QVERIFY2(m_browser->Run(PageScripts::SHOWN) == shown,
                 qPrintable(QLatin1String(key) + u' ' + m_browser->Run(PageScripts::SHOWN)));
    }
    QCOMPARE(m_browser->Run(PageScripts::POINT), QString());
    QCOMPARE(m_browser->Run(PageScripts::SHOWN), playlist);
    QCOMPARE(m_browser->Run(PageScripts::REACHED), u"7 entries, 0 bad"_s);
    QCOMPARE(m_browser->Console(), QStringList());
}

void HtmlPageTest::TextIsToldFromItsBackground()
{
    const Browser::Look look = Row<Looking>().look;
    const QByteArray page = PageTest(WEEK, 3, "2024-03-29T09:05").Page();
    m_browser->Open(page, look);
    QCOMPARE(m_browser->Run(PageScripts::CONTRASTS), u"many looked at, none bad"_s);
    QCOMPARE(m_browser->Console(), QStringList());
}

void HtmlPageTest::EntriesOfTheSameSecondDoNotCoverOneAnother()
{
    const Browser::Look look = Row<Looking>().look;
    QByteArray lines;
    for (int i = 0; i < 30; ++i)
        lines += "1111111|23:59:50|*|*|*|||Volume|1\n1111111|08:00:00|*|*|*|||Volume|2\n";
    const QByteArray page = PageTest(lines, 2).Page();
    m_browser->Open(page, look);
    QCOMPARE(m_browser->Run(PageScripts::OVERLAPS), u"120 entries, 0 covered"_s);
    QCOMPARE(m_browser->Console(), QStringList());
}

void HtmlPageTest::TenThousandEventsAreShown()
{
    QByteArray lines;
    for (int i = 0; i * MANY_DAYS < MANY; ++i)
        lines += "1111111|" + QTime(6, 0).addSecs(i * 60).toString(u"HH:mm:ss"_s).toLatin1() +
                 "|*|*|*|||PlayMessage|message " + QByteArray::number(i) + ".mp3,50\n";
    const PageTest test(lines, MANY_DAYS, "2024-03-29");
    const QStringList expected = test.Events();
    QVERIFY(expected.size() >= MANY);
    const QByteArray page = test.Page();
    QElapsedTimer timer;
    timer.start();
    m_browser->Open(page);
    const qint64 loading_ms = timer.elapsed();
    const QStringList found = m_browser->Run(PageScripts::EVENTS).split(u'\n');
    QCOMPARE(m_browser->Console(), QStringList());
    QVERIFY2(found == expected, "other events");
    QVERIFY2(loading_ms < MANY_DEADLINE_MS, qPrintable(QString::number(loading_ms)));
    qInfo("%lld events: loaded in %lld ms, a page of %lld kB", static_cast<long long>(expected.size()),
          static_cast<long long>(loading_ms), static_cast<long long>(page.size() / 1024));
}

OZNA_CASE(HtmlPage, HtmlPageTest)
#include "tst_HtmlPage.moc"
