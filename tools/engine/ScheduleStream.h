#pragma once

#include <QByteArray>
#include <QString>

// A schedule that is no file: what comes by standard input or by a pipe.
namespace ScheduleStream
{

inline constexpr qint64 MOST_BYTES = 64LL * 1024 * 1024;

// Whether name stands for one: "-", or a pipe, as a shell's <(...) is.
[[nodiscard]] bool Is(const QString& name);

// Whether name stands for standard input.
[[nodiscard]] bool IsStandardInput(const QString& name);

// What comes by it, up to its end. Throws ToolError when reading fails, or more than MOST_BYTES come.
[[nodiscard]] QByteArray Read(const QString& name);

} // namespace ScheduleStream
