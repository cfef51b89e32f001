#pragma once

#include "FindingKind.h"
#include "engine/ScheduleLine.h"

#include <QString>

#include <optional>

class Workspace;

// A line whose form hides what it means: another separator, quotation marks, signs that look like others, fields that
// are missing or too many.
struct LineForm
{
    FindingKind kind;
    QString field;      // as Entry::FieldName has it
    qsizetype position; // in the line's text
    QString text;
    QString advice;               // without the line to write
    std::optional<QString> meant; // that line, where it is known

    // None where the line has the right form, or where nobody can tell.
    [[nodiscard]] static std::optional<LineForm> Of(const Workspace& workspace, const ScheduleLine& line);
};
