#include "ParameterNames.h"

#include "Kinds.h"

#include <array>

namespace
{

constexpr std::array NAMES{"a file name",  "port and path",      "an identifier", "a volume",          "a volume",
                           "an intensity", "a frequency",        "a mask",        "1 (on) or 0 (off)", "a frequency",
                           "an interval",  "a number of photos", "a PDD action"};
static_assert(NAMES.size() == static_cast<std::size_t>(ParameterRole::PDD_NUMBER) + 1, "every role has a name");

} // namespace

QString ParameterNames::Of(TaskType type, int place)
{
    const auto roles = Kinds::Of(type).Roles();
    const auto index = static_cast<std::size_t>(place);
    return QString::fromLatin1(index < roles.size() ? NAMES.at(static_cast<std::size_t>(roles[index])) : "a parameter");
}
