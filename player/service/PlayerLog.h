#pragma once

#include "Log.h"
#include "peers/SoundManager.h"

// The one way the player logs a line; the second gives the message as well.
#define PLAYER_LOG(level, ...) OZNA_LOG_FROM(SoundManager::PATH, level, __VA_ARGS__)
#define PLAYER_TELL(level, ...) OZNA_TELL_FROM(SoundManager::PATH, level, __VA_ARGS__)
