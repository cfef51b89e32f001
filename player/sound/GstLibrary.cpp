#include "sound/GstLibrary.h"

#include "sound/GstHandle.h"

#include <malloc.h>

#include <stdexcept>

namespace
{

// Less than what is held of a source, two seconds. Without it the allocator keeps such blocks once it has freed one.
constexpr int GIVEN_BACK_BYTES = 256 * 1024;

} // namespace

void GstLibrary::Init()
{
    GError* error = nullptr;
    const bool isGood = gst_init_check(nullptr, nullptr, &error) != FALSE;
    const GlibHandle<GError> owned(error);
    if (!isGood)
        throw std::runtime_error(error != nullptr ? error->message : "GStreamer cannot be used");
    // An allocator that is not the system's need not know it.
    static_cast<void>(mallopt(M_MMAP_THRESHOLD, GIVEN_BACK_BYTES));
}
