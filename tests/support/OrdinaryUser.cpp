#include "OrdinaryUser.h"

#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

namespace
{

constexpr uid_t ROOT = 0;
constexpr uid_t NOBODY = 65534;

} // namespace

OrdinaryUser::OrdinaryUser()
    : m_isRoot(::geteuid() == ROOT)
{
    if (m_isRoot && ::setresuid(NOBODY, NOBODY, ROOT) != 0)
        throw std::runtime_error("user");
}

OrdinaryUser::~OrdinaryUser()
{
    // What follows would silently run as the wrong user.
    if (m_isRoot && ::setresuid(ROOT, ROOT, ROOT) != 0)
        std::abort();
}
