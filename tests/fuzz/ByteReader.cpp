#include "ByteReader.h"

std::uint8_t ByteReader::Byte()
{
    return static_cast<std::uint8_t>(Take(1));
}

std::int32_t ByteReader::Int()
{
    return static_cast<std::int32_t>(Take(sizeof(std::int32_t)));
}

std::int64_t ByteReader::LongInt()
{
    return static_cast<std::int64_t>(Take(sizeof(std::int64_t)));
}

std::uint64_t ByteReader::Take(int bytes)
{
    std::uint64_t value = 0;
    for (int i = 0; i < bytes && i < m_rest.size(); ++i)
        value |= std::uint64_t{static_cast<std::uint8_t>(m_rest[i])} << (8 * i);
    m_rest = m_rest.mid(bytes);
    return value;
}
