#include "PeerReply.h"

#include <QDBusArgument>
#include <QDBusMessage>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{

constexpr int NOT_CONVERTIBLE = 0;
constexpr QLatin1Char UNIQUE_NAME(':'); // which it begins with

// The nearest int: a status that no int holds is a refusal all the same.
template <typename Number> int Clamped(Number number)
{
    constexpr Number LOWEST = std::numeric_limits<int>::min();
    constexpr Number HIGHEST = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(number, LOWEST, HIGHEST));
}

int StatusOf(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<QDBusArgument>())
    {
        const auto argument = value.value<QDBusArgument>();
        // The bus library ends the process when it is asked for a value and stands before a structure, an array or
        // nothing.
        return argument.currentType() == QDBusArgument::BasicType ? StatusOf(argument.asVariant()) : NOT_CONVERTIBLE;
    }
    if (value.metaType() == QMetaType::fromType<double>())
        return std::isnan(value.toDouble()) ? NOT_CONVERTIBLE : Clamped(std::round(value.toDouble()));
    if (value.metaType() == QMetaType::fromType<qulonglong>())
        return static_cast<int>(std::min<qulonglong>(value.toULongLong(), std::numeric_limits<int>::max()));
    return Clamped(value.toLongLong());
}

} // namespace

PeerReply::PeerReply(const QDBusMessage& message, std::shared_ptr<const QDBusPendingCallWatcher> turn)
    : m_busError(message.type() == QDBusMessage::ErrorMessage)
    , m_errorMessage(m_busError ? message.errorMessage() : QString())
    , m_status(StatusOf(message.arguments().value(0)))
    , m_sender(message.service().startsWith(UNIQUE_NAME) ? message.service() : QString())
    , m_turn(std::move(turn))
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

PeerReply PeerReply::NotSent(const QString& reason)
{
    PeerReply reply = Failed(reason);
    reply.m_isSent = false;
    return reply;
}
