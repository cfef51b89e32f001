#pragma once

namespace BrokenMessage
{

// Answers on the process's connection to the bus with an empty structure, which no bus library sends and every bus
// takes for a broken message: it drops the connection. False when the connection is not found, or not all is sent.
[[nodiscard]] bool Send();

} // namespace BrokenMessage
