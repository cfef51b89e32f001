#include "TimeZone.h"

#include <ctime>

namespace
{
constexpr const char* ZONE_VARIABLE = "TZ";
}

TimeZone::TimeZone(const QByteArray& zone)
    : m_wasSet(qEnvironmentVariableIsSet(ZONE_VARIABLE))
    , m_before(qgetenv(ZONE_VARIABLE))
{
    qputenv(ZONE_VARIABLE, zone);
    ::tzset();
}

TimeZone::~TimeZone()
{
    if (m_wasSet)
        qputenv(ZONE_VARIABLE, m_before);
    else
        qunsetenv(ZONE_VARIABLE);
    ::tzset();
}
