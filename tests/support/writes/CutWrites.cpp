// Cuts the writes of the process that this is preloaded into: those to files below the folder OZNA_CUT_BELOW are
// counted, and at the one of the number OZNA_CUT_AT, from 1 on, the process is killed, a write in its middle, as a
// power cut would do it. With OZNA_CUT_BY=full, every one from there on fails for want of room instead, if it needs
// some.
// Both names of a function are replaced here, so neither may stand for the other.
#undef _FILE_OFFSET_BITS
#undef _TIME_BITS

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

const char* Below()
{
    static const char* const below = std::getenv("OZNA_CUT_BELOW");
    return below;
}

bool IsFull()
{
    static const bool isFull = std::getenv("OZNA_CUT_BY") != nullptr;
    return isFull;
}

bool IsBelow(const char* path)
{
    return Below() != nullptr && path != nullptr && std::strncmp(path, Below(), std::strlen(Below())) == 0;
}

bool IsBelow(int descriptor)
{
    char name[PATH_MAX] = {};
    char link[64] = {};
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    return ::readlink(link, name, sizeof name - 1) > 0 && IsBelow(name);
}

bool IsFolder(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

// Whether the call is to be cut; it is counted.
bool IsReached()
{
    static int count = 0;
    static const int cut = std::atoi(std::getenv("OZNA_CUT_AT"));
    ++count;
    return IsFull() ? count >= cut : count == cut;
}

void Kill()
{
    static_cast<void>(::kill(::getpid(), SIGKILL));
}

// False where the call is to fail for want of room.
template <typename Place> bool MayGoOn(Place place, bool needsRoom)
{
    if (!IsBelow(place) || !IsReached())
        return true;
    if (!IsFull())
        Kill();
    if (!needsRoom)
        return true;
    errno = ENOSPC;
    return false;
}

template <typename Function> Function Real(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

int Open(const char* name, const char* path, int flags, mode_t mode)
{
    if ((flags & (O_CREAT | O_TMPFILE)) != 0 && (flags & O_ACCMODE) != O_RDONLY && !MayGoOn(path, true))
        return -1;
    return Real<int (*)(const char*, int, ...)>(name)(path, flags, mode);
}

mode_t ModeOf(int flags, std::va_list arguments)
{
    return (flags & (O_CREAT | __O_TMPFILE)) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned int)) : 0;
}

} // namespace

// NOLINTBEGIN: the names and signatures are the C library's.
extern "C" {

int open(const char* path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return Open("open", path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return Open("open64", path, flags, mode);
}

ssize_t write(int descriptor, const void* bytes, size_t count)
{
    const auto real = Real<ssize_t (*)(int, const void*, size_t)>("write");
    if (IsBelow(descriptor) && IsReached())
    {
        if (IsFull())
        {
            errno = ENOSPC;
            return -1;
        }
        static_cast<void>(real(descriptor, bytes, count / 2));
        Kill();
    }
    return real(descriptor, bytes, count);
}

int fsync(int descriptor)
{
    return MayGoOn(descriptor, !IsFolder(descriptor)) ? Real<int (*)(int)>("fsync")(descriptor) : -1;
}

int fdatasync(int descriptor)
{
    return MayGoOn(descriptor, true) ? Real<int (*)(int)>("fdatasync")(descriptor) : -1;
}

int mkdir(const char* path, mode_t mode)
{
    // One that is there takes no room.
    const bool isNew = ::access(path, F_OK) != 0;
    return !isNew || MayGoOn(path, true) ? Real<int (*)(const char*, mode_t)>("mkdir")(path, mode) : -1;
}

int rename(const char* from, const char* to)
{
    return MayGoOn(to, false) ? Real<int (*)(const char*, const char*)>("rename")(from, to) : -1;
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags)
{
    return MayGoOn(to, false) ? Real<int (*)(int, const char*, int, const char*, unsigned int)>("renameat2")(
                                    fromFolder, from, toFolder, to, flags)
                              : -1;
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags)
{
    return MayGoOn(to, true)
               ? Real<int (*)(int, const char*, int, const char*, int)>("linkat")(fromFolder, from, toFolder, to, flags)
               : -1;
}

int unlink(const char* path)
{
    return MayGoOn(path, false) ? Real<int (*)(const char*)>("unlink")(path) : -1;
}

int rmdir(const char* path)
{
    return MayGoOn(path, false) ? Real<int (*)(const char*)>("rmdir")(path) : -1;
}

} // extern "C"
// NOLINTEND
