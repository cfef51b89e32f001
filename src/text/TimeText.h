#pragma once

#include <QDate>
#include <QString>
#include <QTime>

// Reads and writes times and dates as the library does with the same format, at a part of its cost where a text is
// plain. What is no time or date gives an invalid one, which is written as an empty text.
namespace TimeText
{

// "hh:mm:ss", two digits each.
[[nodiscard]] QTime ReadTime(QStringView text);
[[nodiscard]] QString WriteTime(QTime time);

// "yyyyMMdd".
[[nodiscard]] QDate ReadDate(QLatin1String text);

} // namespace TimeText
