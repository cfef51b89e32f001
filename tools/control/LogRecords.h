#pragma once

#include <QString>

#include <optional>
#include <vector>

// What the daemon has logged as errors (level 1) and warnings (level 2).
struct LoggedRecord
{
    std::optional<qint64> moment_ms; // none: the source does not tell
    unsigned int level;
    QString text; // begins with its place in the daemon, "[Scheduler.cpp:60] "
};

namespace LogRecords
{

// The last count of them in a log file, whose lines are "<level> <origin> <text>"; other lines are passed over. Throws
// ToolError when the file cannot be read.
[[nodiscard]] std::vector<LoggedRecord> OfFile(const QString& file, int count);

// The last count of them in the user's journal. None where there is no journal.
[[nodiscard]] std::optional<std::vector<LoggedRecord>> OfJournal(int count);

} // namespace LogRecords
