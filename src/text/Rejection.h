#pragma once

#include <QString>

#include <cstdint>
#include <stdexcept>

// Thrown when no action can be made of a line of a schedule. Records of level 1 have told why.
class Rejection final : public std::invalid_argument
{
public:
    enum class Cause : std::uint8_t
    {
        FIELD_COUNT,    // too few fields
        START_TIME,     // not of three parts
        TASK,           // unknown, or nothing serves it
        PARAMETERS,     // too few, or too many
        PLAYLIST_FILE,  // is not named, or cannot be opened
        PLAYLIST_EMPTY, // has no track
    };

    // reason: what the records have told, joined by "; ". file: what cannot be opened, if that is the cause.
    Rejection(Cause cause, const QString& reason, const QString& file = {})
        : std::invalid_argument(reason.toStdString())
        , m_cause(cause)
        , m_reason(reason)
        , m_file(file)
    {
    }

    [[nodiscard]] Cause GetCause() const { return m_cause; }
    [[nodiscard]] const QString& Reason() const { return m_reason; }
    [[nodiscard]] const QString& File() const { return m_file; }

private:
    Cause m_cause;
    QString m_reason;
    QString m_file;
};
