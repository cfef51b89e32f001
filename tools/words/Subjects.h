#pragma once

#include "engine/Request.h"

#include <QList>
#include <QString>
#include <QVariant>

// What a task's requests say of it: what is played or set. Empty where there is no more to say.
namespace Subjects
{

using Requests = QList<Request>;

// The request of that method; null where there is none.
[[nodiscard]] const Request* Find(const Requests& requests, const char* method);

// The argument of the last request, the one that matters where there are several; invalid where there is none.
[[nodiscard]] QVariant Argument(const Requests& requests, int place = 0);

[[nodiscard]] QString OnOrOff(bool on);

// What is set: on or off, or the numbers themselves.
[[nodiscard]] QString Value(const Requests& requests);

// What is played.
[[nodiscard]] QString Source(const Requests& requests);

// From which track of a playlist, counted from 1; 0 where there is none.
[[nodiscard]] uint Track(const Requests& requests);

// "from track 3"; empty where it plays from the first one, or is no playlist.
[[nodiscard]] QString FromTrack(const Requests& requests);

[[nodiscard]] QString PlaylistAndTrack(const Requests& requests);
[[nodiscard]] QString RadioFrequency(const Requests& requests);
[[nodiscard]] QString LanSwitch(const Requests& requests);
[[nodiscard]] QString AuxiliarySwitch(const Requests& requests);
[[nodiscard]] QString StoppedIdentifier(const Requests& requests);

} // namespace Subjects
