#include "Reading.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <string>

namespace
{

bool IsDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool IsBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

} // namespace

QStringList Reading::Tokens(const QString& line, char separator)
{
    std::istringstream stream(line.toLatin1().toStdString());
    QStringList tokens;
    std::string token;
    while (std::getline(stream, token, separator))
        tokens.append(QString::fromLatin1(token.data(), static_cast<qsizetype>(token.size())).trimmed());
    return tokens;
}

std::optional<int> Reading::Number(const QString& text)
{
    // To the library a number ends where a C text does.
    const std::string digits = QByteArray(text.toLatin1().constData()).trimmed().toStdString();
    const size_t first = !digits.empty() && (digits[0] == '-' || digits[0] == '+') ? 1 : 0;
    if (first == digits.size() ||
        !std::all_of(digits.begin() + static_cast<std::ptrdiff_t>(first), digits.end(), IsDigit))
        return {};
    errno = 0;
    const long long value = std::strtoll(digits.c_str(), nullptr, 10);
    if (errno == ERANGE || value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
        return {};
    return static_cast<int>(value);
}

int Reading::NumberAt(const QStringList& texts, int index, int fallback)
{
    return Number(texts.value(index)).value_or(fallback);
}

QDate Reading::Date(const QString& text)
{
    constexpr qsizetype LENGTH = 8;
    const QByteArray digits = text.toLatin1();
    if (digits.size() != LENGTH || !std::all_of(digits.begin(), digits.end(), IsDigit))
        return {};
    return {digits.left(4).toInt(), digits.mid(4, 2).toInt(), digits.mid(6).toInt()};
}

bool Reading::IsPlain(const QByteArray& content)
{
    return std::all_of(content.begin(), content.end(), [](char byte) { return byte > 0; });
}

QByteArrayList Reading::Lines(const QByteArray& content)
{
    // A carriage return ends no line, but what it is alone in is one.
    QByteArrayList lines = content.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    for (QByteArray& line : lines)
        line.replace("\r", "");
    return lines;
}

int Reading::CutLine(const QByteArray& content)
{
    return content.isEmpty() || content.endsWith('\n') ? 0 : static_cast<int>(content.count('\n')) + 1;
}

bool Reading::IsSkipped(const QByteArray& line)
{
    QByteArray visible = line;
    while (!visible.isEmpty() && IsBlank(visible.back()))
        visible.chop(1);
    return visible.isEmpty() || visible.chopped(1).contains('#');
}
