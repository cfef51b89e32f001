#pragma once

#include <QString>

// What a page is written with.
namespace Html
{

// text that a file or a user gave, as a page shows it: nothing in it is markup, control characters stand as "\xNN", and
// its direction of writing does not reach beyond it.
[[nodiscard]] QString Text(const QString& text);

// As an attribute's value, between double quotes.
[[nodiscard]] QString Attribute(const QString& text);

// `<name class="classes">content</name>`; content is markup already.
[[nodiscard]] QString Element(const char* name, const QString& classes, const QString& content);

// "1 error", "2 errors".
[[nodiscard]] QString Counted(qsizetype number, const char* noun);

// A length for a style: rows with up to two decimals and a point, whatever the locale.
[[nodiscard]] QString Rows(double rows);

// A property of a style, as "--top:2.5", and where the wide columns have another one, "--top:2.5;--wide-top:1.5".
[[nodiscard]] QString PerWidth(const char* name, double narrow, double wide);

} // namespace Html
