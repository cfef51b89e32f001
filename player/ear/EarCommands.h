#pragma once

class QString;
class SoundMaker;
struct SoundSettings;

// What a person asks the player for on a terminal. Each prints what it found on standard output and gives back what the
// process exits with. They run the event loop.
namespace EarCommands
{

// A signal asked the process to end before the command had what it was to tell. Shells tell Ctrl-C so.
inline constexpr int INTERRUPTED = 130;

// The outputs that sound can go to, each as the settings name it, and whether the one that the settings choose is
// there. file: where the settings stand. EXIT_FAILURE when there is no output at all: the list is there to choose from.
[[nodiscard]] int ListOutputs(const SoundSettings& settings, const QString& file);

// Plays the gong at the next full five seconds, and tells to which output it was given and when that has it heard by
// its own clock, or why not. At full volume. An error counts from the moment moved by offset_ms, here and below.
// INTERRUPTED when the gong has not ended.
[[nodiscard]] int Test(SoundMaker& sound, const SoundSettings& settings);

// Plays ten gongs and listens to what the sound server hands to its output: the error of each. EXIT_FAILURE when one
// was not heard, or when nothing can be listened to; INTERRUPTED when not all were played, with the errors so far.
[[nodiscard]] int Measure(SoundMaker& sound, const SoundSettings& settings);

} // namespace EarCommands
