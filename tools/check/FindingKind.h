#pragma once

#include <cstdint>
#include <span>

// What a check can find. The order is that in which the findings of one line are told.
enum class FindingKind : std::uint8_t
{
    ENCODING,
    HEADER,
    SEPARATORS,
    QUOTES,
    FIELD_COUNT,
    TIME_PARTS,
    UNKNOWN_TASK,
    WRONG_PARAMETERS,
    PLAYLIST_MISSING,
    PLAYLIST_EMPTY,
    COMMENTED,
    TEN_FIELDS,
    UNDECODABLE,
    CONTROL_CHARACTER,
    CARRIAGE_RETURN,
    NO_LINE_END,
    NOT_LATIN1,
    DAYS_FORM,
    TIME_FORM,
    TIME_RANGE,
    MIDNIGHT,
    AFTER_MIDNIGHT,
    CLOCK_CHANGE,
    SPOT_ANY,
    DAYS_AND_SPOT,
    IMPOSSIBLE_DATE,
    PAST_DATE,
    UTC_DATE,
    VALIDITY_DATE,
    INVERTED_RANGE,
    EXPIRED,
    NEVER_DUE,
    FALLBACK,
    IGNORED_PARAMETERS,
    NO_FILE_NAME,
    SEMICOLON,
    STREAM_ADDRESS,
    VOLUME_RANGE,
    LIGHT_RANGE,
    SWITCH_VALUE,
    MASK_RANGE,
    FREQUENCY_RANGE,
    PHOTO_SERIES,
    CPU_FREQUENCY,
    PLAYLIST_LINE,
    PLAYLIST_DURATION,
    MEDIA_MISSING,
    MEDIA_CASE,
    MEDIA_UNREADABLE,
    MEDIA_LENGTH,
    UNMATCHED_STOP,
    NEVER_STOPPED,
    EARLY_STOP,
    STOPPED_AT_START,
    CLOSE_RESTART,
    TWO_PLAYLISTS,
    TWO_MESSAGES,
    TWO_VALUES,
    DUPLICATE,
    EARLY_LOAD,
    BLOCKING,
    ABSENT_PEER,
    COUNT,
};

struct FindingKindRow
{
    FindingKind kind;
    const char* name; // part of the tool's contract: scripts look for it
    bool isError;     // the daemon leaves the line out
};

namespace FindingKinds
{

// Every kind, at the place of its number.
[[nodiscard]] std::span<const FindingKindRow> All();

[[nodiscard]] const FindingKindRow& Row(FindingKind kind);

} // namespace FindingKinds
