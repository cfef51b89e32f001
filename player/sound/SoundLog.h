#pragma once

namespace SoundLog
{

// Origin of the records of the sound.
inline constexpr const char* ORIGIN = "/com/kestrelix/ozna/soundmanager/soundobj";

} // namespace SoundLog
