#pragma once

class SoundMaker;
struct SoundSettings;

// What a person asks the player for on a terminal. Each prints what it found on standard output and gives back what the
// process exits with. They run the event loop.
namespace EarCommands
{

// The outputs that sound can go to, each as the settings name it. EXIT_FAILURE when there is none.
[[nodiscard]] int ListOutputs();

// Plays the gong at the next full five seconds, and tells to which output it was given and when that has it heard by
// its own clock, or why not. At full volume. An error counts from the moment moved by offset_ms, here and below.
[[nodiscard]] int Test(SoundMaker& sound, const SoundSettings& settings);

// Plays ten gongs and listens to what the sound server hands to its output: the error of each. EXIT_FAILURE when one
// was not heard, or when nothing can be listened to.
[[nodiscard]] int Measure(SoundMaker& sound, const SoundSettings& settings);

} // namespace EarCommands
