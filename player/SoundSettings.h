#pragma once

#include <QString>

// What the sound is made with. Plain values; who reads them from where is not the sound's business.
struct SoundSettings
{
    // "pulse" or "pulse:SINK", "alsa:DEVICE", or "file:PATH": raw samples, signed 16 bits little-endian, 48 kHz, two
    // channels; a file is begun anew by each process.
    QString output = QStringLiteral("pulse");
    // What is left of the others while a file sounds, 0 to 100 percent: 0 pauses playlists, 100 mixes.
    double duck_percent = 20;
    // Moves each start: negative is earlier. For outputs that are heard later than they say.
    qint64 offset_ms = 0;
};
