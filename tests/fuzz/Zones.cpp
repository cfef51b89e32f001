#include "Zones.h"

#include "TimeZone.h"

#include <optional>

void Zones::Set(const Zone& zone)
{
    static const Zone* current = nullptr;
    static std::optional<TimeZone> set;
    if (&zone == current)
        return;
    set.reset();
    set.emplace(zone.name);
    current = &zone;
}
