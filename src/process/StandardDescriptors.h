#pragma once

namespace StandardDescriptors
{

// Opens those of standard input, output and error that are closed on the null device, so that no file or socket of the
// process gets their number and takes what is meant for them. To be called before anything is opened. False when one
// of them stays closed.
[[nodiscard]] bool OpenClosed();

} // namespace StandardDescriptors
