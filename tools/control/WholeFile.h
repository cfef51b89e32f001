#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// Files that are there whole or not at all, whatever happens meanwhile.
namespace WholeFile
{

// The content; none where there is no such file. Throws ToolError when it cannot be read.
[[nodiscard]] std::optional<QByteArray> Read(const QString& path);

// Writes a new file, in a folder that is made where it is missing, and returns when it has reached the disk. Throws
// ToolError when it cannot.
void Write(const QString& path, const QByteArray& content);

// Puts the file or folder made in the place of another one in one step that has reached the disk on return; needs no
// room. Both are on one file system. What stood in the place is gone; a folder then stands in the place of the first.
// Throws ToolError, and changes nothing, when it cannot.
void Place(const QString& made, const QString& place);

} // namespace WholeFile
