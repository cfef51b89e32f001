#pragma once

#include "Task.h"

#include "TaskPhrases.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QTime>

#include <map>
#include <vector>

struct Event;
struct RehearsalResult;

// A start, or what follows it by itself, as it is compared with another schedule's.
struct RequestedStart
{
    qint64 moment_ms;
    qint64 due_ms;
    QTime time; // that its line has for due_ms
    int line;
    TaskType type; // TASK_UNKNOWN of what follows a start by itself
    QString phrase;
    QStringList requests; // and the tracks that are played; none names a date
    QString exact;        // the same with the moments: whose text is the same asks for the same at the same moments
    QString content;      // the same without any moment, and with a mark where a start time of its own is sent

    [[nodiscard]] static RequestedStart Of(const Event& event, const RehearsalResult& run,
                                           const TaskPhrases::Map& phrases);
};

// By the moments at which they are asked for, in order; what asks for nothing is left out, but for what may do so by
// chance.
using RequestedStarts = std::map<qint64, std::vector<RequestedStart>>;

namespace Requested
{

// The starts that lie in the span of run. phrases: of its schedule.
[[nodiscard]] RequestedStarts StartsOf(const RehearsalResult& run, const TaskPhrases::Map& phrases);

} // namespace Requested
