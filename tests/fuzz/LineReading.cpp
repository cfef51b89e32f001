#include "LineReading.h"

#include "KindReading.h"
#include "Reading.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype FEWEST_FIELDS = 8;
constexpr qsizetype WITH_PARAMETERS = 9;
constexpr int ANY = -1;
constexpr int UNKNOWN = 99;
// Monday to Sunday.
constexpr std::array DAYS{2U, 4U, 8U, 16U, 32U, 64U, 1U};

int TypeOf(const QString& name)
{
    const std::optional<int> number = Reading::Number(name);
    if (number)
        return *number;
    const auto kinds = KindReading::All();
    const auto kind = std::ranges::find_if(
        kinds, [&name](const KindReading& each) { return each.name != nullptr && name == QLatin1String(each.name); });
    return kind == kinds.end() ? UNKNOWN : static_cast<int>(kind - kinds.begin());
}

int Spot(const QString& field, int first, int last)
{
    const int value = Reading::Number(field).value_or(first - 1);
    return value < first || value > last ? ANY : value;
}

QString Shown(int spot)
{
    return spot == ANY ? u"*"_s : QString::number(spot);
}

} // namespace

LineReading::LineReading(const QString& line)
    : fields(Reading::Tokens(line, '|'))
    , hasFields(fields.size() >= FEWEST_FIELDS)
{
    if (!hasFields)
        return;
    for (int i = 0; i < static_cast<int>(DAYS.size()); ++i)
    {
        if (fields[0].mid(i, 1) == u"1"_s)
            daysMask |= DAYS[static_cast<size_t>(i)];
    }
    const QStringList parts = Reading::Tokens(fields[1], ':');
    hasStart = parts.size() >= 3;
    hour = Reading::Number(parts.value(0)).value_or(0);
    minute = Reading::Number(parts.value(1)).value_or(0);
    second = Reading::Number(parts.value(2)).value_or(0);
    day = Spot(fields[2], 1, 31);
    month = Spot(fields[3], 1, 12);
    year = Reading::Number(fields[4]).value_or(ANY);
    from = Reading::Date(fields[5]);
    to = Reading::Date(fields[6]);
    type = TypeOf(fields[7]);
    parameterText = fields.size() == WITH_PARAMETERS ? fields[8] : QString();
    parameters = Reading::Tokens(parameterText, ',');
}

bool LineReading::IsAction() const
{
    if (!hasFields || !hasStart || type < 0 || type >= static_cast<int>(KindReading::All().size()))
        return false;
    const KindReading& kind = KindReading::All()[static_cast<size_t>(type)];
    return kind.fewest >= 0 && parameters.size() >= kind.fewest && parameters.size() <= kind.most;
}

QString LineReading::Rewritten() const
{
    QString days;
    for (const unsigned int bit : DAYS)
        days += QLatin1Char((daysMask & bit) != 0 ? '1' : '-');
    const QString dateFormat = u"yyyyMMdd"_s;
    QStringList rewritten{days,
                          u"%1:%2:%3"_s.arg(hour).arg(minute).arg(second),
                          Shown(day),
                          Shown(month),
                          Shown(year),
                          from.toString(dateFormat),
                          to.toString(dateFormat),
                          QString::number(type)};
    if (!parameterText.isEmpty())
        rewritten.append(parameterText);
    return rewritten.join(u'|');
}
