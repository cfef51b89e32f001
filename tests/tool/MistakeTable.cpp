#include "MistakeTable.h"

#include <QFile>

#include <stdexcept>

namespace
{

QByteArray Unescaped(const QByteArray& text)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i)
    {
        if (text[i] != '\\')
        {
            bytes += text[i];
            continue;
        }
        const char sign = text.size() > ++i ? text[i] : ' ';
        if (sign == 'x')
        {
            bytes += QByteArray::fromHex(text.mid(i + 1, 2));
            i += 2;
        }
        else if (sign == 't' || sign == 'r' || sign == '\\')
            bytes += sign == 't' ? '\t' : sign == 'r' ? '\r' : sign;
        else
            throw std::runtime_error("no such escape: " + text.toStdString());
    }
    return bytes;
}

void Take(const QByteArray& line, std::vector<Mistake>& mistakes)
{
    // An empty line of a schedule may lack the blank.
    const QByteArray text = line.mid(2);
    Mistake& mistake = mistakes.back();
    switch (line[0])
    {
    case '-': mistake.schedule += Unescaped(text) + '\n'; break;
    case '~': mistake.schedule += Unescaped(text); break;
    case '>': mistake.findings.append(QString::fromUtf8(text)); break;
    case '+': mistake.corrected.append(QString::fromUtf8(Unescaped(text))); break;
    default: throw std::runtime_error("a line without a sign: " + line.toStdString());
    }
}

} // namespace

std::vector<Mistake> MistakeTable::Read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(file.errorString().toStdString());
    std::vector<Mistake> mistakes;
    for (const QByteArray& line : file.readAll().split('\n'))
    {
        if (line.startsWith("= "))
            mistakes.push_back({line.mid(2), {}, {}, {}});
        else if (!mistakes.empty() && !line.isEmpty())
            Take(line, mistakes);
    }
    for (const Mistake& mistake : mistakes)
    {
        if (mistake.schedule.isEmpty() || mistake.findings.isEmpty())
            throw std::runtime_error("no schedule, or no finding: " + mistake.name.toStdString());
    }
    return mistakes;
}
