#include "Suite.h"
#include "UnitTest.h"
#include "text/StringUtils.h"

using namespace Qt::StringLiterals;

class StringUtilsTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALineIsSplitIntoTrimmedTokens_data();
    void ALineIsSplitIntoTrimmedTokens();
    void AVeryLongLineIsSplitWhole();
};

void StringUtilsTest::ALineIsSplitIntoTrimmedTokens_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<char>("separator");
    QTest::addColumn<QStringList>("tokens");

    const auto row = [](const char* name, const QString& line, char separator, const QStringList& tokens) {
        QTest::newRow(name) << line << separator << tokens;
    };
    const QString empty = QStringLiteral("");

    row("an empty line gives an empty list", empty, '|', {});
    row("a null line gives an empty list", QString(), '|', {});
    row("a line without separator is one token", u"abc"_s, '|', {u"abc"_s});
    row("two tokens come in order", u"a|b"_s, '|', {u"a"_s, u"b"_s});
    row("two separators in a row give an empty token", u"a||b"_s, '|', {u"a"_s, empty, u"b"_s});
    row("a separator at the end gives no further token", u"a|b|"_s, '|', {u"a"_s, u"b"_s});
    row("two separators at the end give one empty token", u"a||"_s, '|', {u"a"_s, empty});
    row("a separator at the start gives an empty token", u"|a"_s, '|', {empty, u"a"_s});
    row("a lone separator gives one empty token", u"|"_s, '|', {empty});
    row("three separators alone give three empty tokens", u"|||"_s, '|', {empty, empty, empty});
    row("tokens are trimmed at both ends", u" x , y "_s, ',', {u"x"_s, u"y"_s});
    row("blanks inside a token stay", u" a  b |c d"_s, '|', {u"a  b"_s, u"c d"_s});
    row("tabs and line ends are trimmed", u"\ta\t|\tb\r\n"_s, '|', {u"a"_s, u"b"_s});
    row("a token of blanks alone becomes empty", u"a|  \t|b"_s, '|', {u"a"_s, empty, u"b"_s});
    row("blanks after the last separator are a token", u"a| "_s, '|', {u"a"_s, empty});
    row("a line of blanks is one empty token", u"   "_s, '|', {empty});
    row("other separators are plain text", u"08:30,a;b"_s, '|', {u"08:30,a;b"_s});
    row("a time is split at its colons", u"08:30:00"_s, ':', {u"08"_s, u"30"_s, u"00"_s});
    row("a playlist line is split at its semicolon", u"song.mp3;180"_s, ';', {u"song.mp3"_s, u"180"_s});
    row("a Latin-1 letter stays", u"caf\u00e9|x"_s, '|', {u"caf\u00e9"_s, u"x"_s});
    row("a character beyond Latin-1 becomes a question mark", u"a\u20acb|\u4e2d"_s, '|', {u"a?b"_s, u"?"_s});
    row("a NUL is a character like others", u"a\0b|c"_s, '|', {u"a\0b"_s, u"c"_s});
}

void StringUtilsTest::ALineIsSplitIntoTrimmedTokens()
{
    QFETCH(QString, line);
    QFETCH(char, separator);
    QFETCH(QStringList, tokens);
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
