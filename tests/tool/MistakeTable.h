#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

// A schedule with a mistake that people make.
struct Mistake
{
    QByteArray name;
    QByteArray schedule;   // the whole file
    QStringList findings;  // "kind line:column", all of them, in their order
    QStringList corrected; // the lines after the advice; empty: the tool cannot know what was meant
};

// A file with a mistake a paragraph; the paragraphs are separated by empty lines:
//
//     = a blank in the name of a task
//     - 1111100|08:30:00|*|*|*|||Stop Message
//     > unknown-task 1:26
//     + 1111100|08:30:00|*|*|*|||StopMessage
//
// Its name; the lines of the schedule; its findings; the lines after the advice. In the lines of the schedule \t, \r
// and \xHH stand for bytes, and \\ for a backslash; "~" instead of "-" begins one that has no line feed at its end.
// Text before the first "=" is a comment.
namespace MistakeTable
{

// Throws std::runtime_error when the file cannot be read, or has another form.
[[nodiscard]] std::vector<Mistake> Read(const QString& path);

} // namespace MistakeTable
