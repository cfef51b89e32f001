#include "Browser.h"
#include "PageScripts.h"
#include "PageTest.h"
#include "Rows.h"
#include "Suite.h"
#include "ToolScripts.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray DAY = "1111111|07:00:00|*|*|*|||Volume|45\n"
                       "1111111|07:00:00|*|*|*|||Light|5\n"
                       "1111111|08:00:00|*|*|*|||PlayRadioFm|98.5\n"
                       "1111111|10:00:00|*|*|*|||StopRadioFm\n"
                       "1111111|12:00:00|*|*|*|||PlayPlaylist|two & <three>,50,p\n"
                       "1111111|12:10:00|*|*|*|||Volume|<b>\n"
                       "1111111|13:00:00|*|*|*|||enableAux|1\n"
                       "1111111|15:00:00|*|*|*|||enableAux|0\n"
                       "1111111|20:00:00|*|*|*|||Light|0\n"
                       "0001000|23:50:00|*|*|*|||Volume|20\n";

// The first lines are found fault with: one is left out, and two do not do what they say.
const QByteArray FAULTY = "1111111|08:00:00|*|*|*|||Vol<i>|45\n"
                          "1111111|24:00:00|*|*|*|||Volume|1\n"
                          "1111111|09:00:00|*|*|*|||StopPlaylist|nobody & co\n"
                          "1111111|10:00:00|*|*|*|||PlayMessage|gong.mp3,70\n"
                          "1111111|11:00:00|*|*|*|||Volume|10\n";

const char* const MORNING = "2024-03-29T07:30";

struct Pointed
{
    const char* name;
    const char* start; // of the daemon; empty: it has been running for long
    int day;
    int hour;
    const char* told; // up to the minutes, then the volume, the light, the radio, and what plays
};

const QList<Pointed> POINTED{
    {"before the day's first", "", 0, 3, "In force on Fri 29 March at 03: 20.0, off, off, nothing"},
    {"set", "", 1, 7, "In force on Sat 30 March at 07: 45.0, 5, off, nothing"},
    {"radio", "", 1, 9, "In force on Sat 30 March at 09: 45.0, 5, 98.5 MHz, nothing"},
    {"after the radio", "", 1, 10, "In force on Sat 30 March at 10: 45.0, 5, off, nothing"},
    {"playlist", "", 0, 12, "In force on Fri 29 March at 12: 45.0, 5, off, Playlist two & <three>"},
    {"aux", "", 0, 13, "In force on Fri 29 March at 13: 0.0, 5, off, Aux input"},
    {"switched off", "", 0, 20, "In force on Fri 29 March at 20: 0.0, off, off, nothing"},
    {"the day's end", "", 0, 24, "In force on Fri 29 March at 23: 0.0, off, off, nothing"},
    {"the missing hour", "", 2, 9, "In force on Sun 31 March at 09: 45.0, 5, 98.5 MHz, nothing"},
    {"nothing set yet", MORNING, 0, 3, "In force on Fri 29 March at 03: not set yet, not set yet, off, nothing"},
    {"switched to what should be on", MORNING, 0, 9,
     "In force on Fri 29 March at 09: not set yet, 5, 98.5 MHz, nothing"},
};

} // namespace

// What a planner does with a page: looks up findings, chooses kinds, and asks what is in force.
class HtmlToolsTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void FindingsStandWithTheirLines();
    void DetailsTellTheFindingsOfTheLine();
    void WithoutFindingsThatIsTold();
    void AMissedEntryShowsItsValue();
    void WhatIsInForceFollowsThePointer_data() { AddRows(POINTED); }
    void WhatIsInForceFollowsThePointer();
    void WhatIsInForceFollowsTheFocus();
    void KindsAreShownAndHidden();
    void PaperTellsThatKindsAreHidden();
    void AHiddenEntryThatIsLookedForIsShown();

private:
    QString Run(const QByteArray& script) { return m_browser->Run(script); }

    std::unique_ptr<Browser> m_browser;
};

void HtmlToolsTest::initTestCase()
{
    QVERIFY2(!Browser::Program().isEmpty(), "no browser is installed");
    m_browser = std::make_unique<Browser>();
}

void HtmlToolsTest::cleanupTestCase()
{
    m_browser.reset();
}

void HtmlToolsTest::FindingsStandWithTheirLines()
{
    const PageTest test(FAULTY, 2);
    const QList<QByteArray> lines = FAULTY.split('\n');
    QStringList expected;
    for (const PageNotes::Finding& finding : test.Notes().findings)
    {
        // Of the first lines only the stop has events.
        const QString event = finding.line < 3 ? u"none"_s : QString::number(finding.line);
        expected.append(u"%1 %2 %3 %4 %5"_s.arg(QLatin1String(finding.isError ? "error" : "warning"))
                            .arg(finding.line)
                            .arg(QString::fromUtf8(lines[finding.line - 1]), event, finding.name));
    }
    QVERIFY(expected.filter(u"error 1 "_s).size() == 1);
    QVERIFY(!expected.filter(u"warning 2 "_s).isEmpty());
    QVERIFY(!expected.filter(u"unmatched-stop"_s).isEmpty());
    m_browser->Open(test.Page());
    QCOMPARE(Run(ToolScripts::FINDINGS), expected.join(u'\n'));
    const QString text = Run(ToolScripts::FINDINGS_TEXT);
    for (const PageNotes::Finding& finding : test.Notes().findings)
        QVERIFY2(text.contains(finding.text), qPrintable(finding.text));
    QVERIFY(test.Page().contains("The daemon leaves out 1 line of the schedule."));
    QCOMPARE(m_browser->Console(), QStringList());
}

void HtmlToolsTest::DetailsTellTheFindingsOfTheLine()
{
    const PageTest test(FAULTY, 1);
    m_browser->Open(test.Page());
    QStringList told;
    for (const Event& event : test.Run().Result().events)
    {
        QCOMPARE(Run(QString::fromLatin1(ToolScripts::FOCUS).arg(told.size()).toUtf8()), QString());
        told.append(QString::number(event.lineNumber) + u' ' + Run(ToolScripts::SHOWN_FINDINGS));
    }
    QCOMPARE(told, (QStringList{u"3 unmatched-stop"_s, u"4 "_s, u"5 "_s}));
}

void HtmlToolsTest::WithoutFindingsThatIsTold()
{
    const QByteArray page = PageTest("1111111|11:00:00|*|*|*|||Volume|10\n", 1).Page();
    QVERIFY(page.contains("The check found nothing wrong"));
    QVERIFY(!page.contains("id=\"findings\""));
}

void HtmlToolsTest::AMissedEntryShowsItsValue()
{
    const QByteArray page = PageTest("1111111|00:00:00|*|*|*|||Volume|37\n"
                                     "1111111|00:00:00|*|*|*|||PlayMessage|late gong.mp3\n"
                                     "1111111|00:00:00|*|*|*|||8|15\n",
                                     2)
                                .Page();
    m_browser->Open(page);
    const QStringList buttons = Run(R"(
        report([...document.querySelectorAll(".missed > button")].map((button) => button.textContent).join("\n"));
    )")
                                    .split(u'\n');
    QVERIFY(buttons.size() >= 3);
    for (const char* text : {"Volume 37.0", "Message late gong.mp3", "Amplifiers 15"})
        QVERIFY2(!buttons.filter(QLatin1String(text)).isEmpty(), text);
    QVERIFY2(buttons.filter(u"line"_s).isEmpty(), qPrintable(buttons.join(u'\n')));
}

void HtmlToolsTest::WhatIsInForceFollowsThePointer()
{
    const auto& [name, start, day, hour, told] = Row<Pointed>();
    m_browser->Open(PageTest(DAY, 4, start).Page());
    QCOMPARE(Run(ToolScripts::IN_FORCE), u"nothing"_s);
    const QString move = u"pointAt(%1, %2);"_s.arg(day).arg(hour);
    QCOMPARE(Run(ToolScripts::POINT_AT + move.toUtf8()), QString());
    QCOMPARE(Run(ToolScripts::IN_FORCE), QLatin1String(told));
    QCOMPARE(m_browser->Console(), QStringList());
}

void HtmlToolsTest::WhatIsInForceFollowsTheFocus()
{
    m_browser->Open(PageTest(DAY, 1).Page(), Browser::Look::PHONE);
    const QList<QPair<const char*, QString>> steps{
        {"ArrowDown", u"In force on Fri 29 March at 07: 45.0, 5, off, nothing"_s},
        {"ArrowDown", u"In force on Fri 29 March at 08: 45.0, 5, 98.5 MHz, nothing"_s},
        {"ArrowDown", u"In force on Fri 29 March at 10: 45.0, 5, off, nothing"_s},
        {"ArrowDown", u"In force on Fri 29 March at 12: 45.0, 5, off, Playlist two & <three>"_s},
        {"ArrowDown", u"In force on Fri 29 March at 12: 0.0, 5, off, Playlist two & <three>"_s},
        {"Escape", u"nothing"_s},
    };
    QCOMPARE(Run(QString::fromLatin1(ToolScripts::FOCUS).arg(0).toUtf8()), QString());
    for (const auto& [key, told] : steps)
    {
        m_browser->Press(key);
        QCOMPARE(Run(ToolScripts::IN_FORCE), told);
    }
}

void HtmlToolsTest::KindsAreShownAndHidden()
{
    m_browser->Open(PageTest(DAY, 1).Page());
    const QString all = u"aux light playlist radio volume | aux playlist radio | "_s;
    QCOMPARE(Run(ToolScripts::SHOWN_KINDS), all);
    const QList<QPair<const char*, QString>> steps{
        {"volume", u"aux light playlist radio | aux playlist radio | 7 of 9 events are shown"_s},
        {"radio", u"aux light playlist | aux playlist | 5 of 9 events are shown"_s},
        {"volume", u"aux light playlist volume | aux playlist | 7 of 9 events are shown"_s},
        {"radio", all},
    };
    for (const auto& [kind, shown] : steps)
    {
        QCOMPARE(Run(QString::fromLatin1(ToolScripts::TICK).arg(QLatin1String(kind)).toUtf8()), QString());
        QCOMPARE(Run(ToolScripts::SHOWN_KINDS), shown);
    }
    // The keys pass over what is hidden.
    QCOMPARE(Run(QString::fromLatin1(ToolScripts::TICK).arg(u"radio"_s).toUtf8()), QString());
    QCOMPARE(Run(QString::fromLatin1(ToolScripts::FOCUS).arg(1).toUtf8()), QString());
    m_browser->Press("ArrowDown");
    QCOMPARE(Run(PageScripts::SHOWN), u"Fri 29 March, 12:00:00: Playlist two & <three>"_s);
    m_browser->Press("ArrowUp");
    QCOMPARE(Run(PageScripts::SHOWN), u"Fri 29 March, 07:00:00: Light 5"_s);
}

void HtmlToolsTest::PaperTellsThatKindsAreHidden()
{
    m_browser->Open(PageTest(DAY, 1).Page(), Browser::Look::PAPER);
    QCOMPARE(Run(ToolScripts::SHOWN_FILTER), QString());
    QCOMPARE(Run(QString::fromLatin1(ToolScripts::TICK).arg(u"volume"_s).toUtf8()), QString());
    QCOMPARE(Run(ToolScripts::SHOWN_FILTER), u"output 7 of 9 events are shown"_s);
}

void HtmlToolsTest::AHiddenEntryThatIsLookedForIsShown()
{
    m_browser->Open(PageTest(FAULTY, 1).Page());
    QCOMPARE(Run(QString::fromLatin1(ToolScripts::TICK).arg(u"playlist"_s).toUtf8()), QString());
    QCOMPARE(Run(ToolScripts::SHOWN_KINDS), u"message volume |  | 2 of 3 events are shown"_s);
    QCOMPARE(Run(ToolScripts::FOLLOW), QString());
    QCOMPARE(Run(ToolScripts::SHOWN_KINDS), u"message playlist volume |  | "_s);
    QCOMPARE(Run(PageScripts::SHOWN), u"Fri 29 March, 09:00:00: Stop playlist nobody & co"_s);
}

OZNA_CASE(HtmlTools, HtmlToolsTest)
#include "tst_HtmlTools.moc"
