#pragma once

#include "Log.h"

#include <QList>
#include <QString>

// One record that the daemon's code logged, without its "[file:line] ".
struct DaemonRecord
{
    LogLevel level;
    QString text;
};

// The log client of a process that links the tool: what the daemon's code logs is kept for the one that lives, and goes
// nowhere while none does. Only one may live.
class DaemonLog final
{
public:
    // least: what is graver than this, or as grave, is kept.
    explicit DaemonLog(LogLevel least);
    ~DaemonLog();

    DaemonLog(const DaemonLog&) = delete;
    DaemonLog& operator=(const DaemonLog&) = delete;

    // The records since the last call, in order.
    [[nodiscard]] QList<DaemonRecord> Take();
};
