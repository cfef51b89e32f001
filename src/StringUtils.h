#pragma once

#include <QString>
#include <QStringList>

namespace StringUtils
{

// Splits line at every separator into tokens, trimmed of white space at both ends, in order.
// A separator at the start, and two in a row, give an empty token; one at the very end gives no further token;
// an empty line gives an empty list. Characters beyond Latin-1 become "?": the line is split as 8-bit text.
QStringList SplitLineIntoTokens(const QString& line, char separator);

} // namespace StringUtils
