#pragma once

#include <atomic>

// The request that the process end. It stands from then on: what is long looks at it between two steps, because the
// event loop hears of a signal only when it has handled every message that waits. One for the process.
class StopRequest final
{
public:
    // Safe in a signal context.
    static void Make() noexcept { m_isMade = true; }

    [[nodiscard]] static bool IsMade() noexcept { return m_isMade; }

private:
    static inline std::atomic<bool> m_isMade = false;
    static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must not wait for a lock");
};
