#pragma once

#include "engine/EarlyLoads.h"

#include <QString>

// What a load on another day makes of a line, in words.
namespace EarlyText
{

// "a load on another day, from 08:00:00 to 20:00:00, starts it at 00:00:00 on Mon 2024-05-20, 8 h early".
[[nodiscard]] QString Of(const EarlyLoads::Early& early);

} // namespace EarlyText
