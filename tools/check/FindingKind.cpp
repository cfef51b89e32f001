#include "FindingKind.h"

#include <array>
#include <cstddef>

namespace
{

constexpr std::array TABLE{
    FindingKindRow{FindingKind::ENCODING, "encoding", true},
    FindingKindRow{FindingKind::HEADER, "header", true},
    FindingKindRow{FindingKind::SEPARATORS, "separators", false},
    FindingKindRow{FindingKind::QUOTES, "quotes", false},
    FindingKindRow{FindingKind::FIELD_COUNT, "field-count", true},
    FindingKindRow{FindingKind::TIME_PARTS, "time-parts", true},
    FindingKindRow{FindingKind::UNKNOWN_TASK, "unknown-task", true},
    FindingKindRow{FindingKind::WRONG_PARAMETERS, "wrong-parameters", true},
    FindingKindRow{FindingKind::PLAYLIST_MISSING, "playlist-missing", true},
    FindingKindRow{FindingKind::PLAYLIST_EMPTY, "playlist-empty", true},
    FindingKindRow{FindingKind::COMMENTED, "commented", false},
    FindingKindRow{FindingKind::TEN_FIELDS, "ten-fields", false},
    FindingKindRow{FindingKind::UNDECODABLE, "undecodable", false},
    FindingKindRow{FindingKind::CONTROL_CHARACTER, "control-character", false},
    FindingKindRow{FindingKind::CARRIAGE_RETURN, "carriage-return", false},
    FindingKindRow{FindingKind::NO_LINE_END, "no-line-end", false},
    FindingKindRow{FindingKind::NOT_LATIN1, "not-latin1", false},
    FindingKindRow{FindingKind::DAYS_FORM, "days-form", false},
    FindingKindRow{FindingKind::TIME_FORM, "time-form", false},
    FindingKindRow{FindingKind::TIME_RANGE, "time-range", false},
    FindingKindRow{FindingKind::MIDNIGHT, "midnight", false},
    FindingKindRow{FindingKind::AFTER_MIDNIGHT, "after-midnight", false},
    FindingKindRow{FindingKind::CLOCK_CHANGE, "clock-change", false},
    FindingKindRow{FindingKind::SPOT_ANY, "spot-any", false},
    FindingKindRow{FindingKind::DAYS_AND_SPOT, "days-and-spot", false},
    FindingKindRow{FindingKind::IMPOSSIBLE_DATE, "impossible-date", false},
    FindingKindRow{FindingKind::PAST_DATE, "past-date", false},
    FindingKindRow{FindingKind::UTC_DATE, "utc-date", false},
    FindingKindRow{FindingKind::VALIDITY_DATE, "validity-date", false},
    FindingKindRow{FindingKind::INVERTED_RANGE, "inverted-range", false},
    FindingKindRow{FindingKind::EXPIRED, "expired", false},
    FindingKindRow{FindingKind::NEVER_DUE, "never-due", false},
    FindingKindRow{FindingKind::FALLBACK, "fallback", false},
    FindingKindRow{FindingKind::IGNORED_PARAMETERS, "ignored-parameters", false},
    FindingKindRow{FindingKind::NO_FILE_NAME, "no-file-name", false},
    FindingKindRow{FindingKind::SEMICOLON, "semicolon", false},
    FindingKindRow{FindingKind::STREAM_ADDRESS, "stream-address", false},
    FindingKindRow{FindingKind::VOLUME_RANGE, "volume-range", false},
    FindingKindRow{FindingKind::LIGHT_RANGE, "light-range", false},
    FindingKindRow{FindingKind::SWITCH_VALUE, "switch-value", false},
    FindingKindRow{FindingKind::MASK_RANGE, "mask-range", false},
    FindingKindRow{FindingKind::FREQUENCY_RANGE, "frequency-range", false},
    FindingKindRow{FindingKind::PHOTO_SERIES, "photo-series", false},
    FindingKindRow{FindingKind::CPU_FREQUENCY, "cpu-frequency", false},
    FindingKindRow{FindingKind::PLAYLIST_LINE, "playlist-line", false},
    FindingKindRow{FindingKind::PLAYLIST_DURATION, "playlist-duration", false},
    FindingKindRow{FindingKind::MEDIA_MISSING, "media-missing", false},
    FindingKindRow{FindingKind::MEDIA_CASE, "media-case", false},
    FindingKindRow{FindingKind::MEDIA_UNREADABLE, "media-unreadable", false},
    FindingKindRow{FindingKind::MEDIA_LENGTH, "media-length", false},
    FindingKindRow{FindingKind::UNMATCHED_STOP, "unmatched-stop", false},
    FindingKindRow{FindingKind::NEVER_STOPPED, "never-stopped", false},
    FindingKindRow{FindingKind::EARLY_STOP, "early-stop", false},
    FindingKindRow{FindingKind::STOPPED_AT_START, "stopped-at-start", false},
    FindingKindRow{FindingKind::CLOSE_RESTART, "close-restart", false},
    FindingKindRow{FindingKind::TWO_PLAYLISTS, "two-playlists", false},
    FindingKindRow{FindingKind::TWO_MESSAGES, "two-messages", false},
    FindingKindRow{FindingKind::TWO_VALUES, "two-values", false},
    FindingKindRow{FindingKind::DUPLICATE, "duplicate", false},
    FindingKindRow{FindingKind::EARLY_LOAD, "early-load", false},
    FindingKindRow{FindingKind::BLOCKING, "blocking", false},
    FindingKindRow{FindingKind::ABSENT_PEER, "absent-peer", false},
};

constexpr bool IsIndexedByKind()
{
    for (size_t i = 0; i < TABLE.size(); ++i)
    {
        if (TABLE[i].kind != static_cast<FindingKind>(i))
            return false;
    }
    return TABLE.size() == static_cast<size_t>(FindingKind::COUNT);
}

static_assert(IsIndexedByKind(), "every kind has a row, at the place of its number");

} // namespace

std::span<const FindingKindRow> FindingKinds::All()
{
    return TABLE;
}

const FindingKindRow& FindingKinds::Row(FindingKind kind)
{
    return TABLE[static_cast<size_t>(kind)];
}
