#pragma once

#include <QString>

// How far apart two names are.
namespace Strokes
{

// By how many strokes the texts differ: a letter more, less or other, or two swapped.
[[nodiscard]] int Between(const QString& left, const QString& right);

} // namespace Strokes
