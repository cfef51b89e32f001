#pragma once

#include <QByteArray>

// The process's time zone for as long as the object lives; then the one before it again.
class TimeZone final
{
public:
    // zone: as in the variable TZ.
    explicit TimeZone(const QByteArray& zone);
    ~TimeZone();

    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    const bool m_wasSet;
    const QByteArray m_before;
};
