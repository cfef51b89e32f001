#pragma once

#include "ear/Pcm.h"

#include <QString>

#include <vector>

// The sounds that tests play, made when they are needed.
namespace MediaFiles
{

// Loud from its first frame to its last one, so that both can be found.
[[nodiscard]] std::vector<Pcm::Sample> Block(qint64 frames, double peak = 0.25);

// The form is that of the name's end: wav, flac, ogg, opus, mp3. Ends the test program when it cannot be written.
void Write(const QString& path, const std::vector<Pcm::Sample>& samples, int rate = Pcm::RATE);

} // namespace MediaFiles
