#pragma once

#include <QStringList>

// The commands of the tool. Each takes the arguments behind its name, writes to standard output, and gives the exit
// status (see ExitStatus). Throws ToolError when it cannot do what it is asked for.
namespace Commands
{

int Check(const QStringList& arguments);
int Disable(const QStringList& arguments);
int Deploy(const QStringList& arguments);
int Diff(const QStringList& arguments);
int Dst(const QStringList& arguments);
int Enable(const QStringList& arguments);
int Explain(const QStringList& arguments);
int Next(const QStringList& arguments);
int Rehearse(const QStringList& arguments);
int Reload(const QStringList& arguments);
int Status(const QStringList& arguments);
int Use(const QStringList& arguments);
int Watch(const QStringList& arguments);

} // namespace Commands
