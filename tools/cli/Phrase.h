#pragma once

#include "Request.h"
#include "Task.h"

#include <QList>

// What a task does, in words.
namespace Phrase
{

// "play the message gong.mp3 at volume 70": made of what the task asked for.
[[nodiscard]] QString Of(const Task& task, const QList<Request>& requests);

} // namespace Phrase
