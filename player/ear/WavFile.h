#pragma once

#include "Pcm.h"

#include <QString>

// Writes samples as a wav file. A header of 44 bytes needs no library, and the player has to have a gong also where it
// is built without one.
namespace WavFile
{

// The form of the samples is Pcm's. Empty when the file is written, else what is wrong.
[[nodiscard]] QString Write(const QString& path, std::span<const Pcm::Sample> samples);

} // namespace WavFile
