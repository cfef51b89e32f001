#include "CutText.h"

#include "base/Moment.h"
#include "engine/RehearsalResult.h"

QString CutText::Of(const RehearsalResult& run)
{
    if (!run.HasBegun())
        return QStringLiteral("interrupted before its beginning: nothing is shown");
    return QStringLiteral("interrupted: complete until %1 %2")
        .arg(Moment::DateText(Moment::LocalDate(run.end_ms)), Moment::TimeText(run.end_ms));
}
