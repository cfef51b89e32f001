// Moves the calendar clock of the process that this is preloaded into, by the count of milliseconds that stands at the
// beginning of the file that OZNA_CLOCK_OFFSET_FILE names (8 bytes, native order; mapped, so that a change is seen at
// once). The monotonic clock, which timers and time-outs follow, stays. The kernel is asked directly, and nothing is
// looked up, locked or called that another preloaded library could have replaced: libraries ask for the time before any
// constructor of this one has run, and a replaced open() may ask for it in its turn.
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{

constexpr long NS_PER_MS = 1'000'000;
constexpr long NS_PER_S = 1'000'000'000;
constexpr long MS_PER_S = 1000;
constexpr long NS_PER_US = 1000;

// A 32-bit processor has two of each of these calls, and the C library's types here are those of the later one.
#ifdef SYS_mmap2
constexpr long CALL_MMAP = SYS_mmap2;
#else
constexpr long CALL_MMAP = SYS_mmap;
#endif
#ifdef SYS_clock_gettime64
constexpr long CALL_CLOCK_GETTIME = SYS_clock_gettime64;
#else
constexpr long CALL_CLOCK_GETTIME = SYS_clock_gettime;
#endif

using Offset_ms = std::atomic<long long>;
static_assert(sizeof(time_t) == 8 && Offset_ms::is_always_lock_free);

// Every argument has the width that the kernel reads.
const Offset_ms* MapOffset()
{
    const char* const path = std::getenv("OZNA_CLOCK_OFFSET_FILE");
    const long file = path ? ::syscall(SYS_openat, long{AT_FDCWD}, path, long{O_RDONLY | O_CLOEXEC}) : -1;
    if (file < 0)
        return nullptr;
    const long memory = ::syscall(CALL_MMAP, nullptr, sizeof(Offset_ms), long{PROT_READ}, long{MAP_SHARED}, file, 0L);
    ::syscall(SYS_close, file);
    return memory == -1 ? nullptr : reinterpret_cast<const Offset_ms*>(memory);
}

long long Offset()
{
    enum State
    {
        UNMAPPED,
        MAPPING,
        MAPPED
    };
    static std::atomic<int> state{UNMAPPED};
    static std::atomic<const Offset_ms*> offset{nullptr};
    int expected = UNMAPPED;
    // Who asks while the file is being mapped sees the true time instead of waiting.
    if (state.compare_exchange_strong(expected, MAPPING))
    {
        const int error = errno;
        offset = MapOffset();
        errno = error;
        state = MAPPED;
    }
    const Offset_ms* const mapped = offset;
    return mapped ? mapped->load() : 0;
}

bool IsCalendarClock(clockid_t clock)
{
    return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE || clock == CLOCK_TAI;
}

int ShiftedTime(clockid_t clock, timespec* time)
{
    if (::syscall(CALL_CLOCK_GETTIME, long{clock}, time) != 0)
        return -1;
    if (IsCalendarClock(clock))
    {
        const long long offset_ms = Offset();
        long long seconds = time->tv_sec + offset_ms / MS_PER_S;
        long nanoseconds = time->tv_nsec + static_cast<long>(offset_ms % MS_PER_S) * NS_PER_MS;
        if (nanoseconds < 0)
        {
            nanoseconds += NS_PER_S;
            --seconds;
        }
        else if (nanoseconds >= NS_PER_S)
        {
            nanoseconds -= NS_PER_S;
            ++seconds;
        }
        time->tv_sec = seconds;
        time->tv_nsec = nanoseconds;
    }
    return 0;
}

} // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    return ShiftedTime(clock, time);
}

int gettimeofday(timeval* time, void*) noexcept
{
    timespec now = {};
    if (ShiftedTime(CLOCK_REALTIME, &now) != 0)
        return -1;
    time->tv_sec = now.tv_sec;
    time->tv_usec = now.tv_nsec / NS_PER_US;
    return 0;
}

time_t time(time_t* result) noexcept
{
    timespec now = {};
    if (ShiftedTime(CLOCK_REALTIME, &now) != 0)
        return -1;
    if (result)
        *result = now.tv_sec;
    return now.tv_sec;
}
}
