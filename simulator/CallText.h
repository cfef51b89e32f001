#pragma once

#include <QString>
#include <QVariantList>

// A call or a signal as a person reads it: PlayFile("gong.mp3", "08:30:00").
// Texts are quoted, and what would disturb a terminal is escaped; a double always has a point; a byte is hexadecimal;
// a value of a compound type is shown by its signature alone.
namespace CallText
{

[[nodiscard]] QString Of(const QString& member, const QVariantList& arguments);

// The same, of arguments that are text already.
[[nodiscard]] QString Compose(const QString& member, const QString& arguments);

} // namespace CallText
