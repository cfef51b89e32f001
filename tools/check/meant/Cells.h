#pragma once

#include <QStringList>

// A line as a spreadsheet writes it: parts between separators, some in quotation marks.
struct Cells
{
    QStringList parts;    // trimmed, without their quotation marks
    qsizetype quote = -1; // where the first mark is; -1: nowhere

    // separators: each of these signs is one. " " stands for any number of blanks.
    [[nodiscard]] static Cells Of(const QString& text, const QString& separators);
};
