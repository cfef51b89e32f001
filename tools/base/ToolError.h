#pragma once

#include <QString>

#include <stdexcept>

// Why the tool cannot do what it was asked for, in words for who asked; the file and the line come first where there
// are any. Thrown by anything in the tool, caught by its main. A terminal obeys nothing in it: what is told of may be a
// stranger's file.
class ToolError final : public std::runtime_error
{
public:
    // message: may have several lines.
    explicit ToolError(const QString& message);
};
