#include "PeerReply.h"

#include <QDBusArgument>
#include <QDBusMessage>

#include <cmath>
#include <limits>

namespace
{

constexpr int NOT_CONVERTIBLE = 0;

int IntOf(const QDBusArgument& argument)
{
    // The bus library ends the process when it is asked for an int and stands before a structure, an array or nothing.
    if (argument.currentType() != QDBusArgument::BasicType)
        return NOT_CONVERTIBLE;
    return argument.asVariant().toInt();
}

// What no int holds cannot be converted either, and converting it is undefined for some types.
template <typename Number> int IntOf(Number number)
{
    constexpr Number LOWEST = std::numeric_limits<int>::min();
    constexpr Number HIGHEST = std::numeric_limits<int>::max();
    return number >= LOWEST && number <= HIGHEST ? static_cast<int>(number) : NOT_CONVERTIBLE;
}

int StatusOf(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<QDBusArgument>())
        return IntOf(value.value<QDBusArgument>());
    if (value.metaType() == QMetaType::fromType<double>())
        return IntOf(std::round(value.toDouble()));
    if (value.metaType() == QMetaType::fromType<qulonglong>())
        return value.toULongLong() <= std::numeric_limits<int>::max() ? value.toInt() : NOT_CONVERTIBLE;
    return IntOf(value.toLongLong());
}

} // namespace

PeerReply::PeerReply(const QDBusMessage& message)
    : m_busError(message.type() == QDBusMessage::ErrorMessage)
    , m_errorMessage(m_busError ? message.errorMessage() : QString())
    , m_status(StatusOf(message.arguments().value(0)))
{
}

PeerReply::PeerReply(int status)
    : m_status(status)
{
}

PeerReply PeerReply::Failed(const QString& errorMessage)
{
    PeerReply reply(0);
    reply.m_busError = true;
    reply.m_errorMessage = errorMessage;
    return reply;
}
