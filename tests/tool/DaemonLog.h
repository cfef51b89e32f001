#pragma once

#include "Log.h"

#include <QStringList>

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

    // The texts of the records since the last call, in order, without their "[file:line] ".
    [[nodiscard]] QStringList Take();
};
