#pragma once

#include "Task.h"

#include <QStringList>

#include <cstddef>
#include <memory>

// What a schedule line hands to the task that it asks for.
struct TaskRequest
{
    QString startTime;      // as written in the line
    QString parameterText;  // as written in the line, commas included
    QStringList parameters; // the same text split at its commas
};

// One kind of task: its names and how it is made. A new kind is one row of the table in TaskTable.cpp.
struct TaskKind : TaskName
{
    using Creator = std::unique_ptr<Task> (*)(const TaskRequest& request);

    int minParameters; // a line with fewer parameters, or with more than maxParameters, is rejected
    int maxParameters;
    Creator create; // null: no class serves the kind. May throw a standard exception, which rejects the line.

    [[nodiscard]] bool Accepts(qsizetype parameterCount) const
    {
        return parameterCount >= minParameters && parameterCount <= maxParameters;
    }
};

namespace TaskTable
{

// How many kinds there are; their types count from 0.
inline constexpr std::size_t SIZE = TASK_NAMES.size();

// The row of that type, or null.
const TaskKind* Find(TaskType type);

} // namespace TaskTable
