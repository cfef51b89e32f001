#pragma once

#include <QString>

struct FieldFit;

// A single date beside marked days, in a line without the fields of a spot date: whether the line is meant for that day
// alone, or for the marked days from it on or up to it, nobody can tell.
namespace LoneDate
{

// What to write in either case; empty where the line has no such date.
[[nodiscard]] QString Advice(const FieldFit& fit);

} // namespace LoneDate
