#include "Printable.h"

namespace
{

constexpr unsigned int BEYOND_ASCII = 0x80;

unsigned int CodeOf(char sign)
{
    return static_cast<unsigned char>(sign);
}

unsigned int CodeOf(char16_t sign)
{
    return sign;
}

QByteArray Encoded(const char* latin1, qsizetype size)
{
    return QString::fromLatin1(latin1, size).toLocal8Bit();
}

QByteArray Encoded(const char16_t* text, qsizetype size)
{
    return QStringView(text, size).toLocal8Bit();
}

} // namespace

Printable::Printable(QStringView text)
{
    Take(text.utf16(), text.size());
}

Printable::Printable(QLatin1String text)
{
    Take(text.data(), text.size());
}

template <typename Sign> void Printable::Take(const Sign* text, qsizetype size)
{
    unsigned int all = 0;
    if (size < ROOM)
    {
        char* target = m_short.data();
        for (const Sign* sign = text; sign != text + size; ++sign)
        {
            all |= CodeOf(*sign);
            *target++ = static_cast<char>(*sign);
        }
        *target = '\0';
    }
    if (size < ROOM && all < BEYOND_ASCII)
    {
        m_text = m_short.data();
        return;
    }
    m_long = Encoded(text, size);
    m_text = m_long.constData();
}
