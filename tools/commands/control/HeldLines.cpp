#include "HeldLines.h"

#include "text/StringUtils.h"

HeldLines HeldLines::Of(const std::vector<ScheduleLine>& lines)
{
    HeldLines held;
    for (const ScheduleLine& line : lines)
    {
        held.taken += line.action != nullptr ? 1 : 0;
        held.rejected += line.IsRejected() ? 1 : 0;
    }
    return held;
}

QString HeldLines::Words(const QString& path) const
{
    return QStringLiteral("%1: %2 taken, %3 rejected")
        .arg(StringUtils::Harmless(path), QString::number(taken), QString::number(rejected));
}
