#include "sound/GstLibrary.h"

#include "sound/GstHandle.h"

#include <stdexcept>

void GstLibrary::Init()
{
    GError* error = nullptr;
    const bool isGood = gst_init_check(nullptr, nullptr, &error) != FALSE;
    const GlibHandle<GError> owned(error);
    if (!isGood)
        throw std::runtime_error(error != nullptr ? error->message : "GStreamer cannot be used");
}
