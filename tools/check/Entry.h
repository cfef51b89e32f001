#pragma once

#include "engine/ScheduleLine.h"
#include "text/ScheduleFields.h"

#include <QStringList>

#include <vector>

// A line that the daemon looks at, cut as the daemon cuts it.
struct Entry
{
    ScheduleLine& line;
    qsizetype fieldCount;   // how many there are
    QStringList fields;     // the first nine of them, trimmed
    QStringList parameters; // those that the task gets

    // Null where the line is rejected.
    [[nodiscard]] Action* GetAction() const { return line.action.get(); }

    // Whether it is an entry with that task.
    [[nodiscard]] bool Is(TaskType type) const;

    // Empty where there is no such field.
    [[nodiscard]] QString Field(ScheduleFields::Field field) const { return fields.value(field); }

    // The whole line with another text in that field, and nothing else changed. The line has the field.
    [[nodiscard]] QString With(ScheduleFields::Field field, const QString& text) const;

    // The same of any line.
    [[nodiscard]] static QString With(const QString& line, ScheduleFields::Field field, const QString& text);

    // The same with another text for a parameter, counted from 0, that the task has.
    [[nodiscard]] QString WithParameter(qsizetype place, const QString& text) const;

    // How the documents call the task.
    [[nodiscard]] QString TaskName() const;

    // How the documents call a field; FIELD_COUNT stands for the whole line.
    [[nodiscard]] static QString FieldName(ScheduleFields::Field field);

    // line: outlives the entry.
    [[nodiscard]] static Entry Of(ScheduleLine& line);

    // Those of the lines that the daemon looks at. lines: outlive the entries.
    [[nodiscard]] static std::vector<Entry> Of(std::vector<ScheduleLine>& lines);
};
