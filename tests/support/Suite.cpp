#include "Suite.h"

#include <cstdio>
#include <cstring>

// The main of every suite: SUITE CASE [ARGUMENTS OF THE TEST LIBRARY...], or SUITE --list, one case a line.

namespace
{

constexpr int USAGE_ERROR = 2;

void List(std::FILE* output)
{
    for (const Suite::Case* each = Suite::Case::First(); each != nullptr; each = each->Next())
        std::fprintf(output, "%s\n", each->Name());
}

const Suite::Case* Find(const char* name)
{
    const Suite::Case* found = Suite::Case::First();
    while (found != nullptr && std::strcmp(found->Name(), name) != 0)
        found = found->Next();
    return found;
}

} // namespace

Suite::Case::Case(const char* name)
    : m_name(name)
    , m_next(m_first)
{
    m_first = this;
}

int main(int argc, char* argv[])
{
    if (argc > 1 && std::strcmp(argv[1], "--list") == 0)
    {
        List(stdout);
        return 0;
    }
    const Suite::Case* const chosen = argc > 1 ? Find(argv[1]) : nullptr;
    if (chosen == nullptr)
    {
        std::fprintf(stderr, "%s: %s%s; its cases are:\n", argv[0], argc > 1 ? "no case " : "no case named",
                     argc > 1 ? argv[1] : "");
        List(stderr);
        return USAGE_ERROR;
    }
    // The test library sees its own arguments alone.
    argv[1] = argv[0];
    return chosen->Run(argc - 1, argv + 1);
}
