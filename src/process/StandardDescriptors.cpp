#include "StandardDescriptors.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr std::array<int, 3> DESCRIPTORS{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
constexpr const char* NULL_DEVICE = "/dev/null";

bool IsOpen(int descriptor)
{
    return ::fcntl(descriptor, F_GETFD) != -1;
}

// What is opened gets the lowest number that is free; those below are open already.
bool OpenWhereClosed(int descriptor)
{
    return IsOpen(descriptor) || ::open(NULL_DEVICE, O_RDWR) == descriptor;
}

} // namespace

bool StandardDescriptors::OpenClosed()
{
    return std::ranges::all_of(DESCRIPTORS, OpenWhereClosed);
}
