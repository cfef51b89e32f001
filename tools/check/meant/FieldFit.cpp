#include "FieldFit.h"

#include "Meant.h"

#include "TaskTable.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>

using namespace ScheduleFields;

namespace
{

constexpr int NEVER = 1000;
constexpr int UNLIKE = FieldFit::TOO_FAR;
constexpr int NEAR = 1;
constexpr int ODD = 2;
constexpr int STRANGE = 10;
constexpr qsizetype MOST_PARTS = 24; // a line of more is none

const QString ANY_SIGN = QStringLiteral("*");

QRegularExpression Whole(const char* pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern)));
}

bool Matches(const QString& text, const QRegularExpression& pattern)
{
    return pattern.match(text).hasMatch();
}

int DaysCost(const QString& text)
{
    static const QRegularExpression SEVEN = Whole("[01]{7}");
    static const QRegularExpression ABOUT_SEVEN = Whole("[01]{2,8}");
    if (Matches(text, SEVEN))
        return 0;
    return Matches(text, ABOUT_SEVEN) || !Meant::Days(text).isEmpty() ? NEAR : UNLIKE;
}

int TimeCost(const QString& text)
{
    static const QRegularExpression TIME = Whole("\\d\\d:\\d\\d:\\d\\d");
    if (Matches(text, TIME))
        return 0;
    return Meant::Time(text).isEmpty() ? UNLIKE : NEAR;
}

int SpotCost(const QString& text, int last)
{
    static const QRegularExpression NUMBER = Whole("\\d{1,2}");
    if (text == ANY_SIGN)
        return 0;
    if (Matches(text, NUMBER))
        return text.toInt() >= 1 && text.toInt() <= last ? 0 : ODD;
    return text.isEmpty() || !Meant::SpotNumber(text).isEmpty() ? ODD : UNLIKE;
}

int DayCost(const QString& text)
{
    constexpr int LAST_DAY = 31;
    return SpotCost(text, LAST_DAY);
}

int MonthCost(const QString& text)
{
    constexpr int LAST_MONTH = 12;
    return SpotCost(text, LAST_MONTH);
}

int YearCost(const QString& text)
{
    static const QRegularExpression YEAR = Whole("\\*|20\\d\\d");
    if (Matches(text, YEAR))
        return 0;
    return text.isEmpty() || !Meant::Year(text).isEmpty() ? ODD : UNLIKE;
}

int LimitCost(const QString& text)
{
    static const QRegularExpression DATE = Whole("20\\d{6}");
    if (text.isEmpty() || Matches(text, DATE))
        return 0;
    if (text == ANY_SIGN)
        return ODD;
    return Meant::Date(text).isEmpty() ? UNLIKE : NEAR;
}

int TaskCost(const QString& text)
{
    if (TypeOfScheduleName(text) != TASK_UNKNOWN)
        return 0;
    if (!Meant::Task(text).isEmpty() || !Meant::TaskAndParameters(text).isEmpty())
        return NEAR;
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber && IsTaskKind(static_cast<TaskType>(number)))
        return ODD;
    return text.isEmpty() ? UNLIKE : STRANGE;
}

int ParametersCost(const QString& text)
{
    return TypeOfScheduleName(text) == TASK_UNKNOWN ? 0 : ODD;
}

// What a field costs that has a text, and one that is not there.
struct Row
{
    int (*cost)(const QString& text);
    int missing;
    const char* instead; // of one that is missing
};

constexpr int KNOWN_INSTEAD = 3;
constexpr int UNKNOWN_INSTEAD = 12;
constexpr int SURPLUS = 4;
constexpr int PARAMETER_APART = 1;

constexpr std::array ROWS{
    Row{DaysCost, KNOWN_INSTEAD, "1111111"}, Row{TimeCost, UNKNOWN_INSTEAD, ""}, Row{DayCost, KNOWN_INSTEAD, "*"},
    Row{MonthCost, KNOWN_INSTEAD, "*"},      Row{YearCost, KNOWN_INSTEAD, "*"},  Row{LimitCost, KNOWN_INSTEAD, ""},
    Row{LimitCost, KNOWN_INSTEAD, ""},       Row{TaskCost, UNKNOWN_INSTEAD, ""}, Row{ParametersCost, 0, ""},
};
static_assert(ROWS.size() == FIELD_COUNT, "every field has a row");

// The cheapest way to make fields of parts.
class Search final
{
public:
    explicit Search(const QStringList& parts)
        : m_parts(parts)
        , m_known(static_cast<size_t>(parts.size()) + 1)
    {
    }

    // Of the parts and fields from these on.
    FieldFit From(qsizetype part, int field)
    {
        if (field == FIELD_COUNT)
            return Rest(part);
        std::optional<FieldFit>& known = m_known[static_cast<size_t>(part)].at(static_cast<size_t>(field));
        if (!known)
            known = Cheapest(part, field);
        return *known;
    }

private:
    FieldFit Cheapest(qsizetype part, int field)
    {
        FieldFit best = WithMissing(part, field);
        if (part == m_parts.size())
            return best;
        const QString& text = m_parts[part];
        const int cost = ROWS.at(static_cast<size_t>(field)).cost(text);
        if (cost < UNLIKE)
        {
            FieldFit fit = From(part + 1, field + 1);
            fit.cost += cost;
            fit.fields.prepend(text);
            if (fit.cost <= best.cost)
                best = fit;
        }
        if (text.isEmpty())
        {
            FieldFit fit = From(part + 1, field);
            fit.cost += SURPLUS;
            fit.surplus.insert(fit.surplus.begin(), part);
            if (fit.cost < best.cost)
                best = fit;
        }
        return best;
    }

    FieldFit WithMissing(qsizetype part, int field)
    {
        const Row& row = ROWS.at(static_cast<size_t>(field));
        FieldFit fit = From(part, field + 1);
        fit.cost += row.missing;
        fit.fields.prepend(QString::fromLatin1(row.instead));
        if (field != FIELD_PARAMETERS)
            fit.missing.insert(fit.missing.begin(), static_cast<Field>(field));
        return fit;
    }

    // Parts behind the parameters are parameters too.
    [[nodiscard]] FieldFit Rest(qsizetype part) const
    {
        FieldFit fit;
        for (; part < m_parts.size(); ++part)
        {
            fit.fields.append(m_parts[part]);
            fit.cost += PARAMETER_APART;
        }
        return fit;
    }

    const QStringList& m_parts;
    std::vector<std::array<std::optional<FieldFit>, FIELD_COUNT>> m_known; // of each part and field
};

// parts with a date of which each number is a part. A line without days of the week has one behind its time.
QStringList WithDateApart(QStringList parts)
{
    const bool hasNoDay = !parts.isEmpty() && parts.first().contains(u'0') && !Meant::Days(parts.first()).isEmpty() &&
                          !Meant::Days(parts.first()).contains(u'1');
    const QStringList date = hasNoDay ? Meant::SpotDate(parts.value(FIELD_DAY)) : QStringList();
    if (date.isEmpty())
        return parts;
    parts.removeAt(FIELD_DAY);
    for (qsizetype i = 0; i < date.size(); ++i)
        parts.insert(FIELD_DAY + i, date[i]);
    return parts;
}

} // namespace

bool FieldFit::LacksTimeOrTask() const
{
    return std::ranges::any_of(missing, [](Field field) { return field == FIELD_START_TIME || field == FIELD_TASK; });
}

QString FieldFit::Line() const
{
    QStringList parameters = fields.mid(FIELD_PARAMETERS);
    while (!parameters.isEmpty() && parameters.last().isEmpty())
        parameters.removeLast();
    QStringList all = fields.first(FIELD_PARAMETERS);
    if (!parameters.isEmpty())
        all.append(parameters.join(QLatin1Char(PARAMETER_SEPARATOR)));
    return all.join(QLatin1Char(FIELD_SEPARATOR));
}

FieldFit FieldFit::Of(const QStringList& parts)
{
    FieldFit fit;
    fit.cost = NEVER;
    if (parts.size() > MOST_PARTS)
        return fit;
    const QStringList apart = WithDateApart(parts);
    fit = Search(apart).From(0, 0);
    fit.hasWholeDate = apart.size() > parts.size();
    fit.hasParametersApart = fit.fields.size() > FIELD_COUNT;
    return fit;
}
