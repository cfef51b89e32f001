#pragma once

#include <QByteArray>
#include <QString>

#include <array>

// A text in the local 8-bit encoding, for a record. Text that is ASCII and not long costs no memory.
class Printable final
{
public:
    explicit Printable(QStringView text);
    explicit Printable(QLatin1String text);

    Printable(const Printable&) = delete;
    Printable& operator=(const Printable&) = delete;

    // Lives as long as this object.
    [[nodiscard]] const char* Text() const { return m_text; }

private:
    template <typename Sign> void Take(const Sign* text, qsizetype size);

    static constexpr qsizetype ROOM = 256;

    std::array<char, ROOM> m_short; // not used where m_long is
    QByteArray m_long;
    const char* m_text;
};
