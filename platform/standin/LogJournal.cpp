#include "LogJournal.h"

#include "JournalAddress.h"
#include "LogRecord.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

constexpr const char* STREAM_VARIABLE = "JOURNAL_STREAM"; // "<device>:<inode>" of what the journal reads

sockaddr_un Address()
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string_view path = JournalAddress();
    path.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    return address;
}

} // namespace

bool LogJournal::Reads(int descriptor)
{
    const char* const stream = std::getenv(STREAM_VARIABLE);
    struct stat status
    {
    };
    return stream != nullptr && ::fstat(descriptor, &status) == 0 &&
           std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino) == stream;
}

LogJournal::LogJournal()
    : m_program(program_invocation_short_name)
    , m_socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
}

LogJournal::~LogJournal()
{
    if (m_socket >= 0)
        ::close(m_socket);
}

bool LogJournal::Take(const LogRecord& record)
{
    // The address each time: a journal that was started anew may have another socket there.
    static const sockaddr_un ADDRESS = Address();
    const std::string entry = record.JournalEntry(m_program);
    return ::sendto(m_socket, entry.data(), entry.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                    reinterpret_cast<const sockaddr*>(&ADDRESS), sizeof ADDRESS) >= 0;
}
