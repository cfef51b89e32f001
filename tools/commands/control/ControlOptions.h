#pragma once

#include "base/CommandLine.h"
#include "control/SchedulerLink.h"

#include <QJsonObject>
#include <QString>

// What the commands that steer the daemon have in common.
namespace ControlOptions
{

// Adds --json.
void AddJson(CommandLine& line);

// Adds --data.
void AddData(CommandLine& line);

[[nodiscard]] bool WantsJson(const CommandLine& line);

// The daemon's data folder.
[[nodiscard]] QString DataFolder(const CommandLine& line);

// The path of a schedule file of that name in it.
[[nodiscard]] QString SchedulePath(const CommandLine& line, const QString& fileName);

// The state, in words, or as an object where line asks for it. file: more members of the object.
[[nodiscard]] QString StateText(const CommandLine& line, const SchedulerLink::State& state,
                                const QJsonObject& file = {});

// "enabled, schedule.csv"
[[nodiscard]] QString StateWords(const SchedulerLink::State& state);

} // namespace ControlOptions
