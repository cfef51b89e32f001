#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "text/StringUtils.h"

using namespace Qt::StringLiterals;

namespace
{

struct Line
{
    const char* name;
    QString line;
    char separator;
    QStringList tokens;
};

const QString EMPTY = u""_s;

const QList<Line> LINES{
    {"an empty line gives an empty list", EMPTY, '|', {}},
    {"a null line gives an empty list", QString(), '|', {}},
    {"a line without separator is one token", u"abc"_s, '|', {u"abc"_s}},
    {"two tokens come in order", u"a|b"_s, '|', {u"a"_s, u"b"_s}},
    {"two separators in a row give an empty token", u"a||b"_s, '|', {u"a"_s, EMPTY, u"b"_s}},
    {"a separator at the end gives no further token", u"a|b|"_s, '|', {u"a"_s, u"b"_s}},
    {"two separators at the end give one empty token", u"a||"_s, '|', {u"a"_s, EMPTY}},
    {"a separator at the start gives an empty token", u"|a"_s, '|', {EMPTY, u"a"_s}},
    {"a lone separator gives one empty token", u"|"_s, '|', {EMPTY}},
    {"three separators alone give three empty tokens", u"|||"_s, '|', {EMPTY, EMPTY, EMPTY}},
    {"tokens are trimmed at both ends", u" x , y "_s, ',', {u"x"_s, u"y"_s}},
    {"blanks inside a token stay", u" a  b |c d"_s, '|', {u"a  b"_s, u"c d"_s}},
    {"tabs and line ends are trimmed", u"\ta\t|\tb\r\n"_s, '|', {u"a"_s, u"b"_s}},
    {"a token of blanks alone becomes empty", u"a|  \t|b"_s, '|', {u"a"_s, EMPTY, u"b"_s}},
    {"blanks after the last separator are a token", u"a| "_s, '|', {u"a"_s, EMPTY}},
    {"a line of blanks is one empty token", u"   "_s, '|', {EMPTY}},
    {"other separators are plain text", u"08:30,a;b"_s, '|', {u"08:30,a;b"_s}},
    {"a time is split at its colons", u"08:30:00"_s, ':', {u"08"_s, u"30"_s, u"00"_s}},
    {"a playlist line is split at its semicolon", u"song.mp3;180"_s, ';', {u"song.mp3"_s, u"180"_s}},
    {"a Latin-1 letter stays", u"caf\u00e9|x"_s, '|', {u"caf\u00e9"_s, u"x"_s}},
    {"a character beyond Latin-1 becomes a question mark", u"a\u20acb|\u4e2d"_s, '|', {u"a?b"_s, u"?"_s}},
    {"a NUL is a character like others", u"a\0b|c"_s, '|', {u"a\0b"_s, u"c"_s}},
};

} // namespace

class StringUtilsTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALineIsSplitIntoTrimmedTokens_data() { AddRows(LINES); }
    void ALineIsSplitIntoTrimmedTokens();
    void AVeryLongLineIsSplitWhole();
};

void StringUtilsTest::ALineIsSplitIntoTrimmedTokens()
{
    const auto& [name, line, separator, tokens] = Row<Line>();
    QCOMPARE(StringUtils::SplitLineIntoTokens(line, separator), tokens);
    QCOMPARE(StringUtils::CountTokens(line, separator), tokens.size());
    for (qsizetype count = 0; count <= tokens.size() + 1; ++count)
        QCOMPARE(StringUtils::FirstTokens(line, separator, count), tokens.mid(0, count));
}

void StringUtilsTest::AVeryLongLineIsSplitWhole()
{
    constexpr int COUNT = 300000;
    const QString line = u" abc |"_s.repeated(COUNT);
    const QStringList tokens = StringUtils::SplitLineIntoTokens(line, '|');
    QCOMPARE(tokens.size(), COUNT);
    QCOMPARE(tokens.first(), u"abc"_s);
    QCOMPARE(tokens.last(), u"abc"_s);
}

OZNA_CASE(StringUtils, StringUtilsTest)
#include "tst_StringUtils.moc"
