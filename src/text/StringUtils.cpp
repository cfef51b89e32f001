#include "StringUtils.h"

#include <algorithm>
#include <limits>

namespace
{

bool IsSpace(QLatin1Char sign)
{
    return QChar(sign).isSpace();
}

// As a QString of the same text is trimmed: the library leaves the two spaces beyond ASCII to 8-bit text.
QLatin1String Trimmed(QLatin1String text)
{
    while (!text.isEmpty() && IsSpace(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && IsSpace(text.back()))
        text.chop(1);
    return text;
}

} // namespace

QStringList StringUtils::SplitLineIntoTokens(const QString& line, char separator)
{
    return FirstTokens(line, separator, std::numeric_limits<qsizetype>::max());
}

QStringList StringUtils::FirstTokens(const QString& line, char separator, qsizetype count)
{
    // White space beyond Latin-1 is no white space here: it has become "?" before tokens are trimmed.
    const QByteArray text = line.toLatin1();
    TokenReader reader(QLatin1String(text), separator);
    QStringList tokens;
    for (QLatin1String token; tokens.size() < count && reader.Next(token);)
        tokens.append(QString(token));
    return tokens;
}

QString StringUtils::Harmless(const QString& text)
{
    QString shown;
    for (const QChar character : text)
    {
        if (character.category() == QChar::Other_Control)
            shown += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        else
            shown += character;
    }
    return shown;
}

qsizetype StringUtils::CountTokens(const QString& line, char separator)
{
    const QLatin1Char sign(separator);
    return line.count(sign) + (line.isEmpty() || line.back() == sign ? 0 : 1);
}

bool StringUtils::TokenReader::Next(QLatin1String& token)
{
    if (m_rest.isEmpty())
        return false;
    const qsizetype end = std::find(m_rest.cbegin(), m_rest.cend(), m_separator) - m_rest.cbegin();
    token = Trimmed(m_rest.left(end));
    m_rest = m_rest.mid(std::min(end + 1, m_rest.size()));
    return true;
}
