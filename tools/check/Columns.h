#pragma once

#include "engine/ScheduleLine.h"

#include <QStringView>

#include <vector>

class Findings;

// Where in its line a finding is. Columns count characters from 1.
namespace Columns
{

// The column of the character at position, an index into text; one behind the end counts as well.
[[nodiscard]] int At(QStringView text, qsizetype position);

// The column at which that field of a line begins, without the blanks before it; where it is empty, the one behind its
// separator. The end of the line where the line lacks it. name: as Entry::FieldName has it; any other is the line's.
[[nodiscard]] int OfField(QStringView text, const QString& name);

// The same of a parameter, counted from 0; the end of the line where it lacks that.
[[nodiscard]] int OfParameter(QStringView text, qsizetype place);

// Gives each finding without a column that of its field. lines: all of the file, in their order.
void Fill(const std::vector<ScheduleLine>& lines, Findings& findings);

} // namespace Columns
