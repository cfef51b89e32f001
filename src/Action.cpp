#include "Action.h"

#include "Clock.h"
#include "Log.h"
#include "TaskTable.h"
#include "tasks/PlayPlaylist.h"
#include "tasks/RequestPddAction.h"
#include "text/Rejection.h"
#include "text/ScheduleFields.h"
#include "text/StringUtils.h"

#include <algorithm>
#include <limits>

using namespace ScheduleFields;

namespace
{

constexpr int LOST_S = 4; // ahead of the start, the last one included

int ParseSpot(const char* name, const QString& field, int first, int last)
{
    bool isNumber = false;
    const int value = field.toInt(&isNumber);
    if (isNumber && value >= first && value <= last)
        return value;
    OZNA_LOG(LEVEL_TRACE, "Found %s=%s, consider %s=all", name, qPrintable(field), name);
    return ANY;
}

} // namespace

Action::Action(const QString& line)
{
    OZNA_LOG(LEVEL_TRACE, ">>> Action line: %s", qPrintable(line.left(Log::RECORD_SIZE)));

    const qsizetype fieldCount = StringUtils::CountTokens(line, FIELD_SEPARATOR);
    if (fieldCount <= FIELD_TASK)
        throw Rejection(Rejection::Cause::FIELD_COUNT,
                        OZNA_TELL(LEVEL_ERROR, "Wrong action fields (%d found, at least %d expected)",
                                  static_cast<int>(fieldCount), FIELD_TASK + 1));

    const QStringList fields = StringUtils::FirstTokens(line, FIELD_SEPARATOR, FIELD_COUNT);
    ParseWeekDays(fields[FIELD_DAYS]);
    ParseStartTime(fields[FIELD_START_TIME]);
    ParseSpotDate(fields);
    ParseValidity(fields[FIELD_FROM], fields[FIELD_TO]);
    const TaskType type = Task::NameToType(fields[FIELD_TASK]);
    const QString parameterText = ParameterText(fields, fieldCount);
    LogSummary(fields, type, parameterText);
    CreateTask(type, fields[FIELD_START_TIME], parameterText);
}

Action::~Action() = default;

void Action::ParseStartTime(const QString& field)
{
    const QStringList parts = StringUtils::FirstTokens(field, TIME_SEPARATOR, TIME_PARTS);
    if (parts.size() < TIME_PARTS)
        throw Rejection(
            Rejection::Cause::START_TIME,
            OZNA_TELL(LEVEL_ERROR, "Wrong action start time (%s: hour:minute:second expected)", qPrintable(field)));
    m_hour = parts[0].toInt();
    m_minute = parts[1].toInt();
    m_second = parts[2].toInt();
    m_startTime = QTime(m_hour, m_minute, m_second);
}

void Action::ParseSpotDate(const QStringList& fields)
{
    constexpr int LAST_DAY = 31;
    constexpr int LAST_MONTH = 12;
    m_day = ParseSpot("day", fields[FIELD_DAY], 1, LAST_DAY);
    m_month = ParseSpot("month", fields[FIELD_MONTH], 1, LAST_MONTH);
    m_year = ParseSpot("year", fields[FIELD_YEAR], std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

void Action::LogSummary(const QStringList& fields, TaskType type, const QString& parameterText) const
{
    OZNA_LOG(LEVEL_DETAIL, "--------------- Action --------------");
    OZNA_LOG(LEVEL_DETAIL, "Dow:    0x%x (%s) ", static_cast<unsigned int>(m_dow), qPrintable(fields[FIELD_DAYS]));
    OZNA_LOG(LEVEL_DETAIL, "Start:  %02d:%02d:%02d", m_hour, m_minute, m_second);
    OZNA_LOG(LEVEL_DETAIL, "Spot:   day=%s, month=%s, year=%s", qPrintable(SpotText(m_day)),
             qPrintable(SpotText(m_month)), qPrintable(SpotText(m_year)));
    OZNA_LOG(LEVEL_DETAIL, "From:   %s", qPrintable(FromText()));
    OZNA_LOG(LEVEL_DETAIL, "To:     %s", qPrintable(ToText()));
    OZNA_LOG(LEVEL_DETAIL, "Task:   %s (type=%d)", qPrintable(fields[FIELD_TASK]), type);
    OZNA_LOG(LEVEL_DETAIL, "Params: %s", qPrintable(parameterText.left(Log::RECORD_SIZE)));
    OZNA_LOG(LEVEL_DETAIL, "-------------------------------------");
}

void Action::CreateTask(TaskType type, const QString& startTime, const QString& parameterText)
{
    const TaskKind* kind = TaskTable::Find(type);
    if (kind == nullptr || kind->create == nullptr)
        throw Rejection(Rejection::Cause::TASK, OZNA_TELL(LEVEL_ERROR, "Unknown task (%d)", type));
    if (!kind->Accepts(StringUtils::CountTokens(parameterText, PARAMETER_SEPARATOR)))
        throw Rejection(Rejection::Cause::PARAMETERS,
                        OZNA_TELL(LEVEL_ERROR, "Wrong task parameters (%s)", kind->logName));
    const QStringList parameters = StringUtils::FirstTokens(parameterText, PARAMETER_SEPARATOR, MOST_PARAMETERS);
    m_task = kind->create({startTime, parameterText, parameters});

    const auto* pdd = qobject_cast<const RequestPddAction*>(m_task.get());
    if (pdd != nullptr && !connect(pdd, &RequestPddAction::PddAction, this, &Action::OnPddActionRequest))
        throw Rejection(Rejection::Cause::TASK, OZNA_TELL(LEVEL_ERROR, "RequestPddAction task creation failed"));
}

bool Action::IsDueOn(const QDate& date) const
{
    return IsDueAt(date, QTime(0, 0).addSecs(StartSecond().value_or(0)));
}

bool Action::IsPrepared() const
{
    return m_task->m_type == TASK_PLAY_MESSAGE || m_task->m_type == TASK_PLAY_PLAYLIST;
}

int Action::SecondsToStart() const
{
    return Clock::SecondsTo(m_hour, m_minute, m_second);
}

bool Action::IsEarly() const
{
    if (!IsDueToday() || m_task->IsRunning())
        return false;
    if (m_forced)
    {
        OZNA_LOG(LEVEL_DETAIL, "Task %s IsEarly (forced ready)", qPrintable(m_task->GetName()));
        return true;
    }
    if (IsAhead())
    {
        OZNA_LOG(LEVEL_DETAIL, "Task %s IsEarly: active in <%d seconds", qPrintable(m_task->GetName()), EARLY_S);
        return true;
    }
    return IsLateStart();
}

bool Action::IsAhead() const
{
    return AHEAD.Has(SecondsToStart());
}

std::int64_t Action::SecondsAfterMidnight() const
{
    constexpr std::int64_t MINUTE_S = 60;
    constexpr std::int64_t HOUR_S = 3600;
    return m_hour * HOUR_S + m_minute * MINUTE_S + m_second;
}

std::optional<int> Action::StartSecond() const
{
    constexpr std::int64_t DAY_S = 86400;
    const std::int64_t second = SecondsAfterMidnight();
    return second >= 0 && second < DAY_S ? std::optional(static_cast<int>(second)) : std::nullopt;
}

bool Action::ToleratesLateness() const
{
    const auto* playlist = qobject_cast<const PlayPlaylist*>(m_task.get());
    return m_task->GetDelayable_s() != 0 && (playlist == nullptr || !playlist->IsCompleted());
}

// A tolerance beyond every int counts as none here.
Action::Window Action::LateStart() const
{
    return ToleratesLateness() ? Window{0, -std::int64_t{static_cast<int>(m_task->GetDelayable_s())}} : Window{};
}

bool Action::IsLateStart() const
{
    return LateStart().Has(-Clock::SecondsSince(m_startTime));
}

Action::Window Action::InTime() const
{
    return {IsPrepared() ? PREPARED_AHEAD_S : 0, -IN_TIME_S};
}

Action::Window Action::Delayed() const
{
    const unsigned int tolerance_s = m_task->GetDelayable_s();
    return tolerance_s != 0 ? Window{0, -std::int64_t{tolerance_s}} : Window{};
}

bool Action::IsReady()
{
    m_delay = 0;
    if (m_forced)
    {
        OZNA_LOG(LEVEL_DETAIL, "Task %s IsReady (forced ready)", qPrintable(m_task->GetName()));
        return true;
    }
    if (InTime().Has(SecondsToStart()))
    {
        OZNA_LOG(LEVEL_DETAIL, "Task %s IsReady (in time)", qPrintable(m_task->GetName()));
        return true;
    }
    const Window delayed = Delayed();
    if (delayed.IsEmpty())
        return false;
    m_delay = Clock::SecondsSince(m_startTime);
    if (!delayed.Has(-m_delay))
        return false;
    OZNA_LOG(LEVEL_WARNING, "Task %s IsDelayed but still valid (accumulated delay: %d s, tolerated delay: %u s)",
             qPrintable(m_task->GetName()), m_delay, m_task->GetDelayable_s());
    return true;
}

bool Action::IsLost() const
{
    if (!IsPrepared() || !Window{LOST_S, 1}.Has(SecondsToStart()))
        return false;
    OZNA_LOG(LEVEL_WARNING, "Task %s IsLost (ready in less than %d s)", qPrintable(m_task->GetName()), LOST_S);
    return true;
}

void Action::Start()
{
    OZNA_LOG(LEVEL_DETAIL, "Action '%s' delay: %d s (0=no-delay)", qPrintable(m_task->GetName()), m_delay);
    m_task->PrepareDelayed(static_cast<unsigned int>(std::max(m_delay, 0)));
    OZNA_LOG(LEVEL_TRACE, "Task %s is starting !", qPrintable(m_task->GetName()));
    m_forced = false;
    m_task->Run();
}

void Action::OnPddActionRequest(PDD_ACTION action, bool enable)
{
    Q_EMIT PddActionRequested(action, enable);
}
