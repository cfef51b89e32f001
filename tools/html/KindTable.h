#pragma once

#include "Task.h"

// How a page names and draws the kinds of task.
struct KindLook
{
    TaskType type;
    const char* label; // for people who do not write schedules
    const char* style; // the class of the page's style
    bool hasIcon;      // which stands for the label where there is little room
};

namespace KindTable
{

// The kinds of drawing, and what they are called in the legend.
struct Style
{
    const char* style;
    const char* label;
    bool isBar;
};

inline constexpr Style STYLES[] = {
    {"playlist", "playlist", true}, {"stream", "stream", true},    {"radio", "radio", true},
    {"aux", "aux input", true},     {"message", "message", false}, {"setting", "everything else", false},
};

// The look of that type; that of "everything else" for one without a row of its own.
[[nodiscard]] const KindLook& Find(TaskType type);

} // namespace KindTable
