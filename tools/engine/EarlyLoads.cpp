#include "EarlyLoads.h"

#include "DaysKey.h"
#include "base/Moment.h"
#include "text/ScheduleFields.h"

#include <QSet>

#include <algorithm>
#include <map>
#include <optional>

namespace
{

constexpr size_t YEAR_DAYS = 366;
constexpr size_t BACK_DAYS = 8;   // how far what is in force at a midnight may go back
constexpr int LEAST_EARLY_S = 60; // nobody minds less
const QString OFF = QStringLiteral("0");

// On which days actions are due, those of equal days asked once.
class Days final
{
public:
    using Bits = std::vector<bool>;

    Days(const QDate& first, size_t count)
        : m_first(first)
        , m_count(static_cast<qint64>(count))
    {
    }

    Bits Of(const Action& action)
    {
        // The date in UTC depends on the time of day.
        if (action.HasSpotDate())
            return AllOf(action);
        const auto [place, isNew] = m_known.try_emplace(DaysKey(action));
        if (isNew)
            place->second = AllOf(action);
        return place->second;
    }

private:
    [[nodiscard]] Bits AllOf(const Action& action) const
    {
        Bits bits;
        for (qint64 day = 0; day < m_count; ++day)
            bits.push_back(action.IsDueOn(m_first.addDays(day)));
        return bits;
    }

    const QDate m_first;
    const qint64 m_count;
    std::map<DaysKey, Bits> m_known;
};

// One line that sets a state.
struct Setting
{
    const ScheduleLine* line;
    int second; // of the day
    QString value;
    Days::Bits days;
};

using Settings = std::vector<Setting>;

// The lights, or the radio with its stops.
Settings SettingsOf(const std::vector<ScheduleLine>& lines, TaskType play, TaskType stop, Days& days)
{
    Settings settings;
    for (const ScheduleLine& line : lines)
    {
        const TaskType type = line.action == nullptr ? TASK_UNKNOWN : line.action->m_task->m_type;
        if ((type != play && type != stop) || !line.action->m_startTime.isValid())
            continue;
        const QString value =
            type != play ? OFF
                         : line.text.section(QLatin1Char(ScheduleFields::FIELD_SEPARATOR),
                                             ScheduleFields::FIELD_PARAMETERS, ScheduleFields::FIELD_PARAMETERS);
        settings.push_back(
            {&line, QTime(0, 0).secsTo(line.action->m_startTime), value.trimmed(), days.Of(*line.action)});
    }
    std::ranges::stable_sort(settings, {}, &Setting::second);
    return settings;
}

// What is in force at the midnight with which each day begins.
std::vector<QString> InForce(const Settings& settings, size_t days)
{
    std::vector<QString> values(days, OFF);
    for (size_t day = 1; day < days; ++day)
    {
        values[day] = values[day - 1];
        for (const Setting& setting : settings)
        {
            if (setting.days[day - 1])
                values[day] = setting.value;
        }
    }
    return values;
}

// The days on which a line of the first minute sets what is to be in force.
Days::Bits PutRight(const Settings& settings, size_t days)
{
    Days::Bits bits(days);
    for (const Setting& setting : settings)
    {
        for (size_t day = 0; setting.second > 0 && setting.second < LEAST_EARLY_S && day < days; ++day)
            bits[day] = bits[day] || setting.days[day];
    }
    return bits;
}

// The first of those days, behind BACK_DAYS and another one, that begins with what has no place there; none where there
// is none.
std::optional<size_t> FirstEarly(const Setting& early, const Days::Bits& putRight, const std::vector<QString>& inForce)
{
    // It starts on the first of its days after the load.
    for (size_t day = BACK_DAYS + 1; day < early.days.size(); ++day)
    {
        if (early.days[day] && !early.days[day - 1] && !putRight[day] && inForce[day] != early.value)
            return day;
    }
    return {};
}

void AddForced(const std::vector<ScheduleLine>& lines, TaskType play, TaskType stop, const QDate& first, Days& days,
               size_t count, std::vector<EarlyLoads::Early>& early)
{
    const Settings settings = SettingsOf(lines, play, stop, days);
    const std::vector<QString> inForce = InForce(settings, count);
    const Days::Bits putRight = PutRight(settings, count);
    QSet<int> taken; // seconds of which an earlier line is forced, or that a stop ends
    for (const Setting& setting : settings)
    {
        if (setting.line->action->m_task->m_type != play && play != stop)
            taken.insert(setting.second);
    }
    for (const Setting& setting : settings)
    {
        if (setting.line->action->m_task->m_type != play || taken.contains(setting.second))
            continue;
        taken.insert(setting.second);
        const std::optional<size_t> day =
            setting.second < LEAST_EARLY_S ? std::nullopt : FirstEarly(setting, putRight, inForce);
        const auto next = std::ranges::upper_bound(settings, setting.second, {}, &Setting::second);
        const int until_s = next == settings.end() ? static_cast<int>(Moment::DAY_S) : next->second;
        if (day)
            early.push_back(
                {setting.line->number, first.addDays(static_cast<qint64>(*day)), setting.second, until_s, false});
    }
}

void AddPlaylists(const std::vector<ScheduleLine>& lines, const QDate& first, Days& days,
                  std::vector<EarlyLoads::Early>& early)
{
    for (const ScheduleLine& line : lines)
    {
        if (line.action == nullptr || line.action->m_task->m_type != TASK_PLAY_PLAYLIST ||
            !line.action->m_startTime.isValid())
            continue;
        const int second = QTime(0, 0).secsTo(line.action->m_startTime);
        if (qint64{line.action->m_task->GetDelayable_s()} < Moment::DAY_S - second || second == 0)
            continue;
        const Days::Bits bits = days.Of(*line.action);
        for (size_t day = BACK_DAYS + 1; day < bits.size(); ++day)
        {
            if (!bits[day] || bits[day - 1])
                continue;
            early.push_back({line.number, first.addDays(static_cast<qint64>(day)), second, second, true});
            break;
        }
    }
}

} // namespace

std::vector<EarlyLoads::Early> EarlyLoads::Of(const std::vector<ScheduleLine>& lines, const QDate& first)
{
    const QDate back = first.addDays(-static_cast<qint64>(BACK_DAYS));
    constexpr size_t count = BACK_DAYS + YEAR_DAYS;
    Days days(back, count);
    std::vector<Early> early;
    AddForced(lines, TASK_LIGHT, TASK_LIGHT, back, days, count, early);
    AddForced(lines, TASK_PLAY_RADIO_FM, TASK_STOP_RADIO_FM, back, days, count, early);
    AddPlaylists(lines, back, days, early);
    std::ranges::stable_sort(early, {}, &Early::line);
    return early;
}
