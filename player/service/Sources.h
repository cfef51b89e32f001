#pragma once

#include "SoundMaker.h"
#include "peers/SoundManager.h"

#include <QString>

#include <algorithm>
#include <array>
#include <optional>

// What can play, as requests call it.
struct Source
{
    Piece::Place place;
    const char* name;
    bool hasVolume; // of its own
};

inline constexpr std::array SOURCES{
    Source{Piece::Place::MESSAGE, SoundManager::SOURCE_FILE, true},
    Source{Piece::Place::PLAYLIST, SoundManager::SOURCE_PLAYLIST, true},
    Source{Piece::Place::STREAM, SoundManager::SOURCE_STREAM, true},
    Source{Piece::Place::RADIO, SoundManager::SOURCE_RADIO_FM, false},
    Source{Piece::Place::AUX, SoundManager::SOURCE_AUX, false},
};

// None where name is no source's.
[[nodiscard]] inline std::optional<Piece::Place> PlaceOf(const QString& name)
{
    const auto* const source =
        std::ranges::find_if(SOURCES, [&name](const Source& row) { return name == QLatin1String(row.name); });
    return source == SOURCES.end() ? std::nullopt : std::optional(source->place);
}

[[nodiscard]] constexpr const Source& SourceAt(Piece::Place place)
{
    return *std::ranges::find(SOURCES, place, &Source::place);
}
