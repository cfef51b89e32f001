#include "StringUtils.h"

#include <limits>

QStringList StringUtils::SplitLineIntoTokens(const QString& line, char separator)
{
    return FirstTokens(line, separator, std::numeric_limits<qsizetype>::max());
}

QStringList StringUtils::FirstTokens(const QString& line, char separator, qsizetype count)
{
    const QStringView text(line);
    QStringList tokens;
    qsizetype begin = 0;
    while (begin < text.size() && tokens.size() < count)
    {
        qsizetype end = text.indexOf(QLatin1Char(separator), begin);
        if (end < 0)
            end = text.size();
        // White space beyond Latin-1 is no white space here: it has become "?" before tokens are trimmed.
        tokens.append(QString::fromLatin1(text.mid(begin, end - begin).toLatin1()).trimmed());
        begin = end + 1;
    }
    return tokens;
}

qsizetype StringUtils::CountTokens(const QString& line, char separator)
{
    const QLatin1Char sign(separator);
    return line.count(sign) + (line.isEmpty() || line.back() == sign ? 0 : 1);
}
