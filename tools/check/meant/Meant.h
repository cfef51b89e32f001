#pragma once

#include <QStringList>

// What people mean who write a field in another form than the daemon's. Each gives the form that the daemon reads, and
// nothing where the text does not say it for certain. Text in the right form comes back as it is.
namespace Meant
{

// "8.30", "08h30", "0830", "08:30 PM", "O8:30:00": hh:mm:ss.
[[nodiscard]] QString Time(const QString& text);

// "31.12.2024", "2024-12-31", "12/31/24", "31 Dec 2024": yyyyMMdd. Nothing where day and month could be either.
[[nodiscard]] QString Date(const QString& text);

// "Mon-Fri", "MTWTF--", "xxxxx..", "1-5", "daily": seven times 0 or 1 from Monday on.
[[nodiscard]] QString Days(const QString& text);

// "1st", "25.", "dec", "any": the number of a day or a month, or *.
[[nodiscard]] QString SpotNumber(const QString& text);

// "25.12.2026", "2026-12-25": 25, 12, 2026; "25.12.", "25/12", "25 Dec": 25, 12, *. Empty where it is no such date, or
// could be either of two.
[[nodiscard]] QStringList SpotDate(const QString& text);

// "24", "'24": 2024.
[[nodiscard]] QString Year(const QString& text);

// "playmessage", "PlayMesage", "Play Message", "Radio": the task's name, or its number where it has no name.
[[nodiscard]] QString Task(const QString& text);

// "Volume 50", "Volume=50", "Volume(50)": Volume|50.
[[nodiscard]] QString TaskAndParameters(const QString& text);

// "70%", "7O", "0x0f", "98,5 MHz", "+5": a number, whole or with a point.
[[nodiscard]] QString Number(const QString& text);

// "on", "yes", "off", "false": 1 or 0.
[[nodiscard]] QString Switch(const QString& text);

// "rtsp://server:8554/live", "server:8554/live": port and path.
[[nodiscard]] QString PortAndPath(const QString& text);

} // namespace Meant
