#include "Action.h"

#include "Clock.h"
#include "Log.h"
#include "TaskTable.h"
#include "tasks/PlayPlaylist.h"
#include "tasks/RequestPddAction.h"
#include "text/LineFields.h"
#include "text/NumberText.h"
#include "text/Printable.h"
#include "text/Rejection.h"
#include "text/ScheduleFields.h"
#include "text/StringUtils.h"

#include <algorithm>
#include <array>
#include <limits>

using namespace ScheduleFields;

namespace
{

constexpr int LOST_S = 4; // ahead of the start, the last one included

int ParseSpot(const char* name, QLatin1String field, int first, int last)
{
    const std::optional<int> value = NumberText::ToInt(field);
    if (value && *value >= first && *value <= last)
        return *value;
    OZNA_LOG(LEVEL_TRACE, "Found %s=%s, consider %s=all", name, Printable(field).Text(), name);
    return ANY;
}

} // namespace

Action::Action(const QString& line)
{
    OZNA_LOG(LEVEL_TRACE, ">>> Action line: %s", Printable(QStringView(line).left(Log::RECORD_SIZE)).Text());

    const LineFields fields(line);
    if (fields.Count() <= FIELD_TASK)
        throw Rejection(Rejection::Cause::FIELD_COUNT,
                        OZNA_TELL(LEVEL_ERROR, "Wrong action fields (%d found, at least %d expected)",
                                  static_cast<int>(fields.Count()), FIELD_TASK + 1));

    ParseWeekDays(fields[FIELD_DAYS]);
    ParseStartTime(fields[FIELD_START_TIME]);
    ParseSpotDate(fields);
    ParseValidity(fields[FIELD_FROM], fields[FIELD_TO]);
    const TaskType type = Task::NameToType(QString(fields[FIELD_TASK]));
    LogSummary(fields, type);
    CreateTask(type, fields);
}

Action::~Action() = default;

void Action::ParseStartTime(QLatin1String field)
{
    std::array<int, TIME_PARTS> parts = {};
    StringUtils::TokenReader reader(field, TIME_SEPARATOR);
    for (int& part : parts)
    {
        QLatin1String token;
        if (!reader.Next(token))
            throw Rejection(Rejection::Cause::START_TIME,
                            OZNA_TELL(LEVEL_ERROR, "Wrong action start time (%s: hour:minute:second expected)",
                                      Printable(field).Text()));
        part = NumberText::ToInt(token).value_or(0);
    }
    m_hour = parts[0];
    m_minute = parts[1];
    m_second = parts[2];
    m_startTime = QTime(m_hour, m_minute, m_second);
}

void Action::ParseSpotDate(const LineFields& fields)
{
    constexpr int LAST_DAY = 31;
    constexpr int LAST_MONTH = 12;
    m_day = ParseSpot("day", fields[FIELD_DAY], 1, LAST_DAY);
    m_month = ParseSpot("month", fields[FIELD_MONTH], 1, LAST_MONTH);
    m_year = ParseSpot("year", fields[FIELD_YEAR], std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

void Action::LogSummary(const LineFields& fields, TaskType type) const
{
    OZNA_LOG(LEVEL_DETAIL, "--------------- Action --------------");
    OZNA_LOG(LEVEL_DETAIL, "Dow:    0x%x (%s) ", static_cast<unsigned int>(m_dow),
             Printable(fields[FIELD_DAYS]).Text());
    OZNA_LOG(LEVEL_DETAIL, "Start:  %02d:%02d:%02d", m_hour, m_minute, m_second);
    OZNA_LOG(LEVEL_DETAIL, "Spot:   day=%s, month=%s, year=%s", Printable(SpotText(m_day)).Text(),
             Printable(SpotText(m_month)).Text(), Printable(SpotText(m_year)).Text());
    OZNA_LOG(LEVEL_DETAIL, "From:   %s", Printable(FromText()).Text());
    OZNA_LOG(LEVEL_DETAIL, "To:     %s", Printable(ToText()).Text());
    OZNA_LOG(LEVEL_DETAIL, "Task:   %s (type=%d)", Printable(fields[FIELD_TASK]).Text(), type);
    OZNA_LOG(LEVEL_DETAIL, "Params: %s", Printable(fields.Parameters().left(Log::RECORD_SIZE)).Text());
    OZNA_LOG(LEVEL_DETAIL, "-------------------------------------");
}

void Action::CreateTask(TaskType type, const LineFields& fields)
{
    const TaskKind* kind = TaskTable::Find(type);
    if (kind == nullptr || kind->create == nullptr)
        throw Rejection(Rejection::Cause::TASK, OZNA_TELL(LEVEL_ERROR, "Unknown task (%d)", type));
    const QString parameterText(fields.Parameters());
    if (!kind->Accepts(StringUtils::CountTokens(parameterText, PARAMETER_SEPARATOR)))
        throw Rejection(Rejection::Cause::PARAMETERS,
                        OZNA_TELL(LEVEL_ERROR, "Wrong task parameters (%s)", kind->logName));
    const QStringList parameters = StringUtils::FirstTokens(parameterText, PARAMETER_SEPARATOR, MOST_PARAMETERS);
    m_task = kind->create({QString(fields[FIELD_START_TIME]), parameterText, parameters});

    const auto* pdd = qobject_cast<const RequestPddAction*>(m_task.get());
    if (pdd != nullptr && !connect(pdd, &RequestPddAction::PddAction, this, &Action::OnPddActionRequest))
        throw Rejection(Rejection::Cause::TASK, OZNA_TELL(LEVEL_ERROR, "RequestPddAction task creation failed"));
}

bool Action::CanRequestPddAction() const
{
    return m_task->m_type == TASK_REQUEST_PDD_ACTION;
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
