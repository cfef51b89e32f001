#include "Rows.h"
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
    Rows<QString, bool>::Add({
        {"an empty line is skipped", {}, true},
        {"blanks are skipped", u"   "_s, true},
        {"tabs are skipped", u"\t\t"_s, true},
        {"all four blanks together are skipped", u" \t\r\n "_s, true},
        {"text is kept", u"abc"_s, false},
        {"text between blanks is kept", u"  abc\t"_s, false},
        {"a number sign before text is skipped", u"#abc"_s, true},
        {"a number sign, a blank and text is skipped", u"# abc"_s, true},
        {"blanks before the number sign do not matter", u"  \t# abc"_s, true},
        {"text, number sign and text is skipped whole", u"a # b"_s, true},
        {"a number sign after the first field skips the line", u"1111111|#08:00:00|*|*|*|||StopMessage"_s, true},
        {"a lone number sign is kept", u"#"_s, false},
        {"a lone number sign between blanks is kept", u" #\t "_s, false},
        {"a number sign as the last visible character is kept", u"abc#"_s, false},
        {"a number sign as the last visible character before blanks is kept", u"abc# \t\r"_s, false},
        {"two number signs are skipped: the first counts", u"##"_s, true},
        {"a number sign within and one at the end is skipped", u"a#b#"_s, true},
        {"a number sign before a vertical tab is skipped: that is no blank", u"#\v"_s, true},
        {"a form feed alone is kept: that is no blank", u"\f"_s, false},
        {"a no-break space alone is kept: that is no blank", u"\u00a0"_s, false},
        {"a character beyond Latin-1 is visible", u"\u2003"_s, false},
        {"a number sign before a character beyond Latin-1 is skipped", u"#\u4e2d"_s, true},
        {"the wide number sign is none", u"\uff03abc"_s, false},
        {"a NUL is visible", u"\0"_s, false},
        {"a number sign before a NUL is skipped", u"#\0"_s, true},
    });
}

void CommentsTest::BlankAndCommentLinesAreSkipped()
{
    const auto& [line, skipped] = Rows<QString, bool>::Current();
    QCOMPARE(TextFile::IsBlankOrComment(line), skipped);
}

OZNA_CASE(Comments, CommentsTest)
#include "tst_Comments.moc"
