#pragma once

#include "Task.h"

#include <QString>

// Kinds of task that a page shows and hides together: what starts and what stops the same thing.
namespace KindGroup
{

struct Group
{
    QString name; // in the page's attributes: "playlist", "pdd-action"
    QString label;
    QString style; // the class of the page's style
    bool isBar;    // some of it is drawn as bars
};

[[nodiscard]] Group Of(TaskType type);

} // namespace KindGroup
