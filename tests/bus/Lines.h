#pragma once

#include <QStringList>

// Records that many bus tests expect, in the form of DaemonProcess::Log.
namespace Lines
{

inline QStringList Concat(std::initializer_list<QStringList> lists)
{
    QStringList all;
    for (const QStringList& list : lists)
        all += list;
    return all;
}

inline const QStringList CREATED{QStringLiteral("4 [main.cpp] Creating Scheduler...")};

inline const QStringList READY{QStringLiteral("4 [main.cpp] Scheduler ready"),
                               QStringLiteral("4 [main.cpp] Starting scheduler...")};

// Up to the point where the schedule file has been looked for.
inline QStringList Loading(const QString& path)
{
    return {QStringLiteral("4 [Scheduler.cpp] Starting schedule..."),
            QStringLiteral("4 [Scheduler.cpp] Loading schedule from %1...").arg(path)};
}

inline const QStringList NOT_FOUND{
    QStringLiteral("4 [Scheduler.cpp] No schedules programmed (schedule file not found)")};

// Why, where there is something of that name.
inline QStringList OpenError(const QString& reason)
{
    return {QStringLiteral("2 [Scheduler.cpp] Schedule file open error: %1").arg(reason)};
}

inline const QStringList TOO_LONG = OpenError(QStringLiteral("File name too long"));

// The last line of a schedule, where it has no end.
inline QStringList Cut(int line)
{
    return {QStringLiteral("2 [Scheduler.cpp] Schedule file may be cut: line %1 has no line end").arg(line)};
}

inline QStringList Loaded(int tasks)
{
    return {QStringLiteral("4 [Scheduler.cpp] Schedule loaded (%1 tasks)").arg(tasks)};
}

inline const QStringList STARTED{QStringLiteral("4 [Scheduler.cpp] Finding ready actions..."),
                                 QStringLiteral("4 [Scheduler.cpp] Schedule started")};

inline const QStringList STOPPING{QStringLiteral("4 [Scheduler.cpp] Stopping schedule..."),
                                  QStringLiteral("4 [Scheduler.cpp] Schedule stopped"),
                                  QStringLiteral("4 [Scheduler.cpp] Cleaning up schedule...")};

inline const QStringList CLEANED{QStringLiteral("4 [Scheduler.cpp] Scheduler cleaned-up !")};

inline const QStringList STOPPED = STOPPING + CLEANED;

inline const QStringList RESTARTING{QStringLiteral("4 [Scheduler.cpp] Restarting Schedule...")};

inline const QStringList WAS_ENABLED{QStringLiteral("4 [Scheduler.cpp] Scheduler is enabled")};
inline const QStringList WAS_DISABLED{QStringLiteral("4 [Scheduler.cpp] Scheduler is disabled")};
inline const QStringList DISABLED{QStringLiteral("4 [Scheduler.cpp] Scheduling disabled")};
inline const QStringList TERMINATED{QStringLiteral("4 [main.cpp] Succesfully terminated")};

// Of a start at 08:30:00 that finds its task at work still.
inline QString StillRuns(const char* task, int line)
{
    return QStringLiteral("2 [MissedStarts.cpp] MISSED action: %1, line %2, due at 08:30:00: it still plays or works "
                          "from its last start")
        .arg(QLatin1String(task))
        .arg(line);
}

// The end on SIGTERM of a daemon that is enabled, with what its tasks log as they are deleted.
inline QStringList Ended(const QStringList& byTasks = {})
{
    return WAS_ENABLED + STOPPING + byTasks + CLEANED + DISABLED + STOPPED + TERMINATED;
}

} // namespace Lines
