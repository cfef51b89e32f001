#pragma once

#include <QString>

#include <string_view>

// How grave a record is; the numbers are the log service's.
enum LogLevel : unsigned int
{
    LEVEL_ERROR = 1,   // bus or registration failures, rejected lines, caught exceptions
    LEVEL_WARNING = 2, // something dropped, skipped or defaulted
    LEVEL_NORMAL = 4,  // progress: start, stop, load, actions found and started
    LEVEL_DETAIL = 5,  // parsed fields and timing decisions of one action
    LEVEL_TRACE = 9,   // pass counters and each request to a peer
};

namespace Log
{

// Origin of every record but those that name another.
inline constexpr const char* ORIGIN = "/com/kestrelix/ozna/scheduler/schedulerobj";

// Size of a record with its prefix and its terminator, in bytes; what is longer is cut.
inline constexpr unsigned int RECORD_SIZE = 512;

// The place in the source that a record names, as the record begins: "[file:line] ". A literal, so that nobody puts it
// together while the daemon runs.
struct Site
{
    std::string_view prefix;
};

// Formats the site and the message into one record and hands it to the process's log client.
// A cut never leaves half a UTF-8 character. Never throws; without a log client the record is dropped.
void Emit(LogLevel level, const char* origin, Site site, const char* format, ...) __attribute__((format(printf, 4, 5)));

// The same, and gives the message as the record has it, without "[file:line] " and without blanks at its end, for who
// has to know what was told. It is given without a log client too.
QString Tell(LogLevel level, const char* origin, Site site, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

} // namespace Log

#define OZNA_LOG_DIGITS(number) #number
#define OZNA_LOG_PREFIX(file, line) "[" file ":" OZNA_LOG_DIGITS(line) "] "
#define OZNA_LOG_SITE (Log::Site{OZNA_LOG_PREFIX(__FILE__, __LINE__)})

// The one way a line is logged. Level and format are literals, so that the compiler checks the arguments.
#define OZNA_LOG(level, ...) Log::Emit((level), Log::ORIGIN, OZNA_LOG_SITE, __VA_ARGS__)

// The same for the few records with another origin, and for code that logs on behalf of its caller.
#define OZNA_LOG_FROM(origin, level, ...) Log::Emit((level), (origin), OZNA_LOG_SITE, __VA_ARGS__)
#define OZNA_LOG_AT(site, level, ...) Log::Emit((level), Log::ORIGIN, (site), __VA_ARGS__)

// The three, where the message is to be known as well.
#define OZNA_TELL(level, ...) Log::Tell((level), Log::ORIGIN, OZNA_LOG_SITE, __VA_ARGS__)
#define OZNA_TELL_FROM(origin, level, ...) Log::Tell((level), (origin), OZNA_LOG_SITE, __VA_ARGS__)
#define OZNA_TELL_AT(site, level, ...) Log::Tell((level), Log::ORIGIN, (site), __VA_ARGS__)
