#pragma once

#include <QByteArray>

#include <cstdint>

// Takes numbers off the front of an input; where it ends, zeros follow.
class ByteReader final
{
public:
    explicit ByteReader(const QByteArray& input)
        : m_rest(input)
    {
    }

    std::uint8_t Byte();
    bool Flag() { return (Byte() & 1U) != 0; }

    // Low byte first, so that a small number is a small change of the input.
    std::int32_t Int();
    std::int64_t LongInt();

    // A number from 0 to count - 1.
    int Below(int count) { return Byte() % count; }

    [[nodiscard]] const QByteArray& Rest() const { return m_rest; }

private:
    std::uint64_t Take(int bytes);

    QByteArray m_rest;
};
