#pragma once

#include <QString>

#include <optional>

// Reads whole numbers, at a small part of the library's cost where a text is plain.
namespace NumberText
{

// text as a decimal number, as QString::toInt reads it; none where it is no number, or none that an int holds.
[[nodiscard]] std::optional<int> ToInt(QStringView text);
[[nodiscard]] std::optional<int> ToInt(QLatin1String text);

// What text comes to if it is one to nine digits, and nothing else; none for every other text.
template <typename Text> [[nodiscard]] std::optional<int> Digits(Text text)
{
    constexpr qsizetype MOST = 9; // in the range of an int in any case
    constexpr int BASE = 10;
    if (text.isEmpty() || text.size() > MOST)
        return std::nullopt;
    int value = 0;
    for (qsizetype i = 0; i < text.size(); ++i)
    {
        const char16_t sign = QChar(text[i]).unicode();
        if (sign < u'0' || sign > u'9')
            return std::nullopt;
        value = value * BASE + (sign - u'0');
    }
    return value;
}

} // namespace NumberText
