#pragma once

#include <QString>

namespace OutputFile
{

// Opens a regular file, which is made or begun anew, or a pipe that somebody reads, for writing that never waits. From
// then on the process ignores SIGPIPE: a reader that goes is an error of the output, and no end of the process. Throws
// std::runtime_error with words. The caller closes the descriptor.
int Open(const QString& path);

} // namespace OutputFile
