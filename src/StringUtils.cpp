#include "StringUtils.h"

QStringList StringUtils::SplitLineIntoTokens(const QString& line, char separator)
{
    const QByteArray text = line.toLatin1();
    QStringList tokens;
    qsizetype begin = 0;
    while (begin < text.size())
    {
        qsizetype end = text.indexOf(separator, begin);
        if (end < 0)
            end = text.size();
        tokens.append(QString::fromLatin1(text.constData() + begin, end - begin).trimmed());
        begin = end + 1;
    }
    return tokens;
}
