#include "Rules.h"
#include "Startable.h"

#include "text/Parameter.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <optional>

using namespace ScheduleFields;

namespace
{

// What the first parameter of an entry says.
QString Number(const QString& parameter)
{
    bool isNumber = false;
    const double value = parameter.toDouble(&isNumber);
    return isNumber ? QString::number(value) : QString();
}

QString Switch(const QString& parameter)
{
    bool isNumber = true;
    const bool isOn = Parameter::ToSwitch(parameter, [&] { isNumber = false; });
    return !isNumber ? QString() : isOn ? QStringLiteral("on") : QStringLiteral("off");
}

QString Text(const QString& parameter)
{
    return parameter;
}

QString Off(const QString& /*parameter*/)
{
    return QStringLiteral("0");
}

// A kind of task that leaves one thing as it says, and what comes later in the same second leaves it otherwise. Rows
// with equal names are about the same thing.
struct Row
{
    TaskType type;
    const char* thing;
    QString (*value)(const QString& parameter); // empty where it cannot be read, which is told elsewhere
};

constexpr const char* RADIO = "radio";
constexpr const char* STREAM = "stream";
constexpr const char* MESSAGE = "message";

constexpr std::array TABLE{
    Row{TASK_LIGHT, "light", Number},          Row{TASK_VOLUME, "master volume", Number},
    Row{TASK_AMPLIFIERS, "outputs", Number},   Row{TASK_CAMERA, "camera", Switch},
    Row{TASK_GPS, "GPS receiver", Switch},     Row{TASK_LAN, "LAN", Switch},
    Row{TASK_ENABLE_AUX, "aux input", Switch}, Row{TASK_PLAY_RADIO_FM, RADIO, Number},
    Row{TASK_STOP_RADIO_FM, RADIO, Off},       Row{TASK_PLAY_STREAM, STREAM, Text},
    Row{TASK_STOP_STREAM, STREAM, Off},        Row{TASK_PLAY_MESSAGE, MESSAGE, Text},
};

// Of the same thing and second: an entry that no earlier one is like in value and days.
struct Distinct
{
    const Entry* entry;
    QString value;
    YearDays::Bits days;
};

struct Candidate
{
    const Entry* entry;
    const Row* row;
    QString value;
};

using Group = std::vector<Candidate>;

// What all the groups of a schedule are looked at with.
struct Context
{
    QDate today;
    YearDays days;
    std::vector<Startable> streamStops = {};
};

const Row* RowOf(const Entry& entry)
{
    const auto* const row = std::ranges::find_if(TABLE, [&](const Row& each) { return entry.Is(each.type); });
    return row == TABLE.end() ? nullptr : row;
}

bool IsOf(const Candidate& candidate, const char* thing)
{
    return QLatin1String(candidate.row->thing) == QLatin1String(thing);
}

// Whether a stop of another second ends the stream before it is to begin anew. A stream that still plays is not begun.
bool IsStoppedBetween(const Distinct& stream, const Context& context)
{
    YearDays::Bits playing = stream.days;
    // The stop of the day after the last one is not known.
    playing.reset(YearDays::DAYS - 1);
    for (const Startable& stop : context.streamStops)
    {
        if (stop.second > Startable::Second(*stream.entry))
            playing &= ~stop.days;
        else if (stop.second < Startable::Second(*stream.entry))
            playing &= ~(stop.days >> 1);
    }
    return playing.none();
}

// Whether what plays is stopped right before the next one begins, as it was meant. The two start in the order of the
// lines as long as both start: what starts on days of its own comes last from then on.
bool IsChangeover(const Candidate& candidate, const Distinct& own, const Distinct& earlier, const Context& context)
{
    if (earlier.value != Off({}) || (earlier.days & ~own.days).any())
        return false;
    return IsOf(candidate, RADIO) || (IsOf(candidate, STREAM) && IsStoppedBetween(own, context));
}

// Two messages are two, even if their files are the same; lines that are the same throughout are told as such.
bool AreAtOdds(const Candidate& candidate, const Distinct& own, const Distinct& earlier, const Context& context)
{
    if ((own.days & earlier.days).none())
        return false;
    if (IsOf(candidate, MESSAGE))
        return candidate.entry->fields != earlier.entry->fields;
    return own.value != earlier.value && !IsChangeover(candidate, own, earlier, context);
}

// What comes of two values.
QString Outcome(const Candidate& candidate, const Distinct& own, const Distinct& earlier)
{
    const bool isStopped = own.value == Off({}) || earlier.value == Off({});
    if (IsOf(candidate, STREAM) && isStopped)
        return QStringLiteral("in either order of the lines the stream may be stopped as it begins, or not begin as it "
                              "still plays");
    if (own.days == earlier.days)
        return QStringLiteral("the later line, this one, stays in force");
    return QStringLiteral("the one that was started more recently comes last and stays in force, and the later line, "
                          "this one, where neither was started since the load");
}

void Tell(const Candidate& candidate, const Distinct& own, const Distinct& earlier, const QDate& today,
          Findings& findings)
{
    const QString day = Startable::FirstDay(own.days & earlier.days, today);
    const bool isMessage = IsOf(candidate, MESSAGE);
    const int line = candidate.entry->line.number;
    const int other = earlier.entry->line.number;
    if (isMessage)
        findings.Add({line, FindingKind::TWO_MESSAGES, Entry::FieldName(FIELD_START_TIME),
                      QStringLiteral("line %1 plays a message in the same second, first on %2: both are asked for, and "
                                     "the player decides what is heard")
                          .arg(other)
                          .arg(day),
                      QStringLiteral("write a time at which the message of line %1 has ended").arg(other)});
    else
        findings.Add({line, FindingKind::TWO_VALUES, Entry::FieldName(FIELD_START_TIME),
                      QStringLiteral("line %1 sets the %2 otherwise in the same second, first on %3: %4")
                          .arg(QString::number(other), QLatin1String(candidate.row->thing), day,
                               Outcome(candidate, own, earlier)),
                      QStringLiteral("take one of the two lines out, or change its time or its days")});
}

void LookAt(const Group& group, Context& context, Findings& findings)
{
    std::vector<Distinct> earlier;
    for (const Candidate& candidate : group)
    {
        const Distinct own{candidate.entry, candidate.value, context.days.Of(*candidate.entry->GetAction())};
        const auto odd = std::ranges::find_if(
            earlier, [&](const Distinct& each) { return AreAtOdds(candidate, own, each, context); });
        if (odd != earlier.end())
            Tell(candidate, own, *odd, context.today, findings);
        const bool isKnown = std::ranges::any_of(
            earlier, [&](const Distinct& each) { return each.value == own.value && each.days == own.days; });
        if (!isKnown)
            earlier.push_back(own);
    }
}

// Whether all of them agree, so that their days need not be known.
bool IsHarmless(const Group& group)
{
    return QLatin1String(group.front().row->thing) == QLatin1String(MESSAGE)
               ? group.size() == 1
               : std::ranges::all_of(group, [&](const Candidate& each) { return each.value == group.front().value; });
}

} // namespace

void Rules::FindTwoInASecond(const std::vector<Entry>& entries, const QDate& today, Findings& findings)
{
    Context context{today, YearDays(today)};
    QHash<std::pair<QLatin1String, int>, Group> groups;
    for (const Entry& entry : entries)
    {
        const Row* const row = Startable::Is(entry) && entry.line.warnings.isEmpty() ? RowOf(entry) : nullptr;
        const QString value = row != nullptr ? row->value(entry.parameters.value(0)) : QString();
        if (!value.isEmpty())
            groups[{QLatin1String(row->thing), Startable::Second(entry)}].push_back({&entry, row, value});
        if (Startable::Is(entry) && entry.Is(TASK_STOP_STREAM))
            context.streamStops.push_back({&entry, Startable::Second(entry), context.days.Of(*entry.GetAction())});
    }
    for (const Group& group : std::as_const(groups))
    {
        if (!IsHarmless(group))
            LookAt(group, context, findings);
    }
}
