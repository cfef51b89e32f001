#pragma once

#include <QString>

#include <map>

class Workspace;

// What the tasks of a schedule do, in words, without a rehearsal.
namespace TaskPhrases
{

// By the numbers of the lines that have a task: "set the master volume to 5".
using Map = std::map<int, QString>;

// workspace: of the schedule, name: as messages call it. No rehearsal may live meanwhile. Throws ToolError when reading
// fails.
[[nodiscard]] Map Of(const Workspace& workspace, const QString& name);

} // namespace TaskPhrases
