#pragma once

#include <QString>

namespace OutputFile
{

// Opens a regular file, or a pipe that somebody reads, for writing that never waits. A file is made when there is none;
// one that is there goes on at its end, or is begun anew. From then on the process ignores SIGPIPE: a reader that goes
// is an error of the output, and no end of the process. Throws std::runtime_error with words. The caller closes the
// descriptor.
enum class Begin
{
    ANEW,
    AT_THE_END,
};
int Open(const QString& path, Begin begin);

} // namespace OutputFile
