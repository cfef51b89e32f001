#include "LoneDate.h"

#include "FieldFit.h"
#include "Meant.h"

#include <algorithm>
#include <array>

using namespace ScheduleFields;

QString LoneDate::Advice(const FieldFit& fit)
{
    constexpr std::array SPOT{FIELD_DAY, FIELD_MONTH, FIELD_YEAR};
    const bool hasNoSpot = std::ranges::all_of(
        SPOT, [&](Field field) { return std::ranges::find(fit.missing, field) != fit.missing.end(); });
    const QString from = Meant::Date(fit.fields.value(FIELD_FROM));
    const QString days = Meant::Days(fit.fields.value(FIELD_DAYS));
    const bool hasNoDays = std::ranges::find(fit.missing, FIELD_DAYS) != fit.missing.end();
    if (!hasNoSpot || hasNoDays || from.isEmpty() || !Meant::Date(fit.fields.value(FIELD_TO)).isEmpty())
        return {};
    FieldFit since = fit;
    if (const QString time = Meant::Time(fit.fields[FIELD_START_TIME]); !time.isEmpty())
        since.fields[FIELD_START_TIME] = time;
    if (!days.isEmpty())
        since.fields[FIELD_DAYS] = days;
    since.fields[FIELD_FROM] = from;
    FieldFit spot = since;
    spot.fields[FIELD_DAYS] = QStringLiteral("0000000");
    spot.fields[FIELD_FROM].clear();
    const QStringList date = Meant::SpotDate(from);
    for (qsizetype i = 0; i < date.size(); ++i)
        spot.fields[FIELD_DAY + i] = date[i];
    return QStringLiteral("write %1 for that day alone, or %2 for the marked days from then on")
        .arg(spot.Line(), since.Line());
}
