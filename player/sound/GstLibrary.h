#pragma once

namespace GstLibrary
{

// Makes GStreamer ready. Throws std::runtime_error, with its words, when it cannot be used. May be called again.
void Init();

} // namespace GstLibrary
