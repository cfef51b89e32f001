#include "RehearsalTexts.h"

#include "engine/Rehearsal.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QStringList RehearsalTexts::Requests(const Rehearsal& rehearsal)
{
    QStringList texts;
    for (const Event& event : rehearsal.Events())
    {
        for (const Request& request : event.requests)
            texts.append(u"%1 line %2: %3"_s.arg(request.moment_ms).arg(event.lineNumber).arg(request.Text()));
    }
    return texts;
}

QStringList RehearsalTexts::Starts(const Rehearsal& rehearsal)
{
    QStringList texts;
    for (const Event& event : rehearsal.Events())
    {
        if (event.kind != EventKind::MISSED)
            texts.append(u"%1 line %2: kind %3, due %4, delay %5, forced %6, repeated %7, %8 to %9 by %10, phases %11"_s
                             .arg(event.moment_ms)
                             .arg(event.lineNumber)
                             .arg(static_cast<int>(event.kind))
                             .arg(event.due_ms)
                             .arg(event.delay_s)
                             .arg(event.isForced)
                             .arg(event.isRepeated)
                             .arg(event.begin_ms)
                             .arg(event.end_ms)
                             .arg(event.stoppedByLine)
                             .arg(event.phases_ms));
    }
    return texts;
}

QStringList RehearsalTexts::Missed(const Rehearsal& rehearsal)
{
    QStringList texts;
    for (const Event& event : rehearsal.Events())
    {
        if (event.kind == EventKind::MISSED)
            texts.append(u"%1 line %2: %3"_s.arg(event.due_ms).arg(event.lineNumber).arg(event.reason));
    }
    return texts;
}

QStringList RehearsalTexts::WronglyMissed(const Rehearsal& rehearsal)
{
    QStringList texts;
    for (const Event& missed : rehearsal.Events())
    {
        const bool isStarted = std::ranges::any_of(rehearsal.Events(), [&](const Event& event) {
            return event.kind == EventKind::START && event.delay_s == 0 && event.lineNumber == missed.lineNumber &&
                   event.due_ms == missed.due_ms;
        });
        if (missed.kind == EventKind::MISSED && isStarted)
            texts.append(u"%1 line %2"_s.arg(missed.due_ms).arg(missed.lineNumber));
    }
    return texts;
}
