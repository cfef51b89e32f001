#pragma once

#include <QString>
#include <QStringList>

namespace StringUtils
{

// Splits line at every separator into tokens, trimmed of white space at both ends, in order.
// A separator at the start, and two in a row, give an empty token; one at the very end gives no further token;
// an empty line gives an empty list. Characters beyond Latin-1 become "?": the line is split as 8-bit text.
QStringList SplitLineIntoTokens(const QString& line, char separator);

// The first of those tokens, count at most; a line of nothing but separators then costs no memory for each of them.
QStringList FirstTokens(const QString& line, char separator, qsizetype count);

// text without what a terminal would obey: control characters stand as "\xNN".
[[nodiscard]] QString Harmless(const QString& text);

// How many tokens there are, without making them.
qsizetype CountTokens(const QString& line, char separator);

// The same tokens of 8-bit text, one after the other and in place.
class TokenReader final
{
public:
    TokenReader(QLatin1String text, char separator)
        : m_rest(text)
        , m_separator(separator)
    {
    }

    // The next token; false when there is none.
    [[nodiscard]] bool Next(QLatin1String& token);

private:
    QLatin1String m_rest;
    const QLatin1Char m_separator;
};

} // namespace StringUtils
