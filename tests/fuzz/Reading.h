#pragma once

#include <QByteArrayList>
#include <QDate>
#include <QStringList>

#include <optional>

// What the formats say, read a second time by other means than the daemon's, to be compared with what it made of them.
namespace Reading
{

// The tokens of line between the separators, trimmed.
QStringList Tokens(const QString& line, char separator);

// text as a decimal number that an int holds.
std::optional<int> Number(const QString& text);

// The number at that place of a list, or fallback where there is none.
int NumberAt(const QStringList& texts, int index, int fallback);

// text as yyyyMMdd; invalid for everything else.
QDate Date(const QString& text);

// Whether every byte is one of ASCII and none is NUL: then a file reads as it stands, and a log record ends where its
// text does.
bool IsPlain(const QByteArray& content);

// The lines of a plain file.
QByteArrayList Lines(const QByteArray& content);

// The number of the last line of a plain file where it has no end; 0 where every line has one.
int CutLine(const QByteArray& content);

// Whether a plain line is blank or a comment.
bool IsSkipped(const QByteArray& line);

} // namespace Reading
