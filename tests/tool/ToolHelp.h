#pragma once

#include "CommandCall.h"

#include <QStringList>

// What the tool's help tells of its commands and their options.
namespace ToolHelp
{

// The names of all commands, as "ozna-schedule --help" has them.
[[nodiscard]] QStringList Commands(const CommandCall& call);

// The options of a command, as "--from", of those that it has rows for in its own help.
[[nodiscard]] QStringList Options(const CommandCall& call, const QString& command);

} // namespace ToolHelp
