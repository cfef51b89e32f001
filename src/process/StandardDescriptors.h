#pragma once

namespace StandardDescriptors
{

// Opens closed standard input, output and error on the null device: otherwise a file or socket of the process would get
// their number, and receive what is meant for them. Call it before anything is opened. False when one of them stays
// closed.
[[nodiscard]] bool OpenClosed();

} // namespace StandardDescriptors
