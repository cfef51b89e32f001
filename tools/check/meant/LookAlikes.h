#pragma once

#include <QString>

// Characters that a word processor, a web page or a foot on the wrong key puts in the place of plain ones.
namespace LookAlikes
{

// text with the plain characters that were meant: dashes, quotation marks, blanks, stars, full-width signs, and letters
// of other scripts that look Latin. What has no plain counterpart stays.
[[nodiscard]] QString Plain(const QString& text);

// text with the digits that were meant for letters that look like them: O for 0, l and I for 1.
[[nodiscard]] QString Digits(const QString& text);

} // namespace LookAlikes
