#pragma once

class QString;

namespace Address
{

// Whether text is the address of a stream that can be asked for: rtsp, rtsps, http or https, and a host.
[[nodiscard]] bool IsStream(const QString& text);

} // namespace Address
