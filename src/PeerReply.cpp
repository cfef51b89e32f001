#include "PeerReply.h"

#include <QDBusArgument>
#include <QDBusMessage>

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

bool FitsInt(double number)
{
    return number > std::numeric_limits<int>::min() && number < std::numeric_limits<int>::max();
}

int StatusOf(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<QDBusArgument>())
        return IntOf(value.value<QDBusArgument>());
    // Converting a number that no int holds is undefined.
    if (value.metaType() == QMetaType::fromType<double>() && !FitsInt(value.toDouble()))
        return NOT_CONVERTIBLE;
    return value.toInt();
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
