#include "OrdinaryUser.h"

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
    if (m_isRoot)
        static_cast<void>(::setresuid(ROOT, ROOT, ROOT));
}
