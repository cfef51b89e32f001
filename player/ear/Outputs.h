#pragma once

#include <QList>
#include <QString>

// The outputs of this machine.
namespace Outputs
{

struct Output
{
    QString setting; // as the settings name it: "pulse", "alsa:plughw:CARD=PCH,DEV=0"
    QString name;    // as its maker names it
};

// A card as it is called for good, from the library's name of it: a number may be another card's after the next start,
// and plughw plays what the hardware alone refuses. "hw:1,0" is "plughw:CARD=PCH,DEV=0" where the file card1/id below
// folder says PCH, "plughw:1,0" where there is no such file. What is of another form stays as it is.
[[nodiscard]] QString LastingName(const QString& device, const QString& folder = QStringLiteral("/proc/asound"));

// The sound server's default output first, then each of its outputs by its name, then the cards. Empty when there are
// none.
[[nodiscard]] QList<Output> All();

// What is known of an output without playing on it.
enum class Presence
{
    THERE,
    MISSING,
    UNKNOWN, // a device of ALSA's own configuration
};

// Of the output of that setting, where those are all that the machine has. A card counts by whatever name it is called,
// a file by its folder. folder: as that of LastingName.
[[nodiscard]] Presence PresenceOf(const QString& setting, const QList<Output>& outputs,
                                  const QString& folder = QStringLiteral("/proc/asound"));

// "is there"
[[nodiscard]] const char* WordsOf(Presence presence);

} // namespace Outputs
