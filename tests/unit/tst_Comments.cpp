#include "Suite.h"
#include "UnitTest.h"
#include "text/TextFile.h"

using namespace Qt::StringLiterals;

class CommentsTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void BlankAndCommentLinesAreSkipped_data();
    void BlankAndCommentLinesAreSkipped();
};

void CommentsTest::BlankAndCommentLinesAreSkipped_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("skipped");
    const auto row = [](const char* name, const QString& line, bool skipped) {
        QTest::newRow(name) << line << skipped;
    };
    row("an empty line is skipped", {}, true);
    row("blanks are skipped", u"   "_s, true);
    row("tabs are skipped", u"\t\t"_s, true);
    row("all four blanks together are skipped", u" \t\r\n "_s, true);
    row("text is kept", u"abc"_s, false);
    row("text between blanks is kept", u"  abc\t"_s, false);
    row("a number sign before text is skipped", u"#abc"_s, true);
    row("a number sign, a blank and text is skipped", u"# abc"_s, true);
    row("blanks before the number sign do not matter", u"  \t# abc"_s, true);
    row("text, number sign and text is skipped whole", u"a # b"_s, true);
    row("a number sign after the first field skips the line", u"1111111|#08:00:00|*|*|*|||StopMessage"_s, true);
    row("a lone number sign is kept", u"#"_s, false);
    row("a lone number sign between blanks is kept", u" #\t "_s, false);
    row("a number sign as the last visible character is kept", u"abc#"_s, false);
    row("a number sign as the last visible character before blanks is kept", u"abc# \t\r"_s, false);
    row("two number signs are skipped: the first counts", u"##"_s, true);
    row("a number sign within and one at the end is skipped", u"a#b#"_s, true);
    row("a number sign before a vertical tab is skipped: that is no blank", u"#\v"_s, true);
    row("a form feed alone is kept: that is no blank", u"\f"_s, false);
    row("a no-break space alone is kept: that is no blank", u"\u00a0"_s, false);
    row("a character beyond Latin-1 is visible", u"\u2003"_s, false);
    row("a number sign before a character beyond Latin-1 is skipped", u"#\u4e2d"_s, true);
    row("the wide number sign is none", u"\uff03abc"_s, false);
    row("a NUL is visible", u"\0"_s, false);
    row("a number sign before a NUL is skipped", u"#\0"_s, true);
}

void CommentsTest::BlankAndCommentLinesAreSkipped()
{
    QFETCH(QString, line);
    QFETCH(bool, skipped);
    QCOMPARE(TextFile::IsBlankOrComment(line), skipped);
}

OZNA_CASE(Comments, CommentsTest)
#include "tst_Comments.moc"
