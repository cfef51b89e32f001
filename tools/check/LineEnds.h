#pragma once

// What a check says of the ends of lines, in schedules and playlists alike.
namespace LineEnds
{

inline constexpr const char* LONE_RETURN = "has a carriage return that no line feed follows: it ends no line";
inline constexpr const char* LONE_RETURN_ADVICE =
    "end each line with a line feed, or a carriage return and a line feed";
inline constexpr const char* NONE = "has no line end: the file may be cut";
inline constexpr const char* NONE_ADVICE = "complete the line, and end it with a line feed";

} // namespace LineEnds
