#pragma once

class RequestVolumes;
class SoundMaker;
struct PlayerSettings;

// What each player works with; outlives it.
struct Means
{
    SoundMaker& maker;
    const PlayerSettings& settings;
    RequestVolumes& volumes;
};
