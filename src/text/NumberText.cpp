#include "NumberText.h"

namespace
{

// Nothing that begins so is a number, whatever follows.
bool BeginsNoNumber(char16_t sign)
{
    return sign == u'*' || (sign >= u'A' && sign <= u'Z') || (sign >= u'a' && sign <= u'z');
}

std::optional<int> ByLibrary(QStringView text)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

std::optional<int> ByLibrary(QLatin1String text)
{
    return ByLibrary(QString(text));
}

template <typename Text> std::optional<int> Read(Text text)
{
    constexpr QChar MINUS = u'-';
    if (text.isEmpty() || BeginsNoNumber(QChar(text[0]).unicode()))
        return std::nullopt;
    const bool isNegative = QChar(text[0]) == MINUS;
    if (const std::optional<int> digits = NumberText::Digits(isNegative ? text.mid(1) : text))
        return isNegative ? -*digits : *digits;
    return ByLibrary(text);
}

} // namespace

std::optional<int> NumberText::ToInt(QStringView text)
{
    return Read(text);
}

std::optional<int> NumberText::ToInt(QLatin1String text)
{
    return Read(text);
}
