#include "RunUp.h"

#include "ClockChange.h"
#include "PastDays.h"
#include "Scheduler.h"
#include "StartOrder.h"
#include "base/Moment.h"
#include "tasks/PlayPlaylist.h"
#include "text/LineFields.h"
#include "text/NumberText.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>

namespace
{

using Moment::DAY_MS;
using Moment::DAY_S;

constexpr int SETTLING_DAYS = 8;   // each day of the week has been, and what a first start joins late
constexpr int UNSETTLED_DAYS = 21; // what blocks its own next start has found its rhythm
constexpr int MARGIN_DAYS = 2;     // a spot date may come a day off, and the clocks may be changed
constexpr int LONGEST_DAYS = 28;   // longer playbacks and series are not followed

// Rhythms of two, three, four and six days or weeks begin anew there, on a Monday: where a run-up begins does not
// change them.
constexpr int RHYTHM_DAYS = 84;

constexpr int EARLIEST_S = 3;       // what starts before it in the day does so by luck, or never
constexpr int APART_S = 15;         // a stop and a start that are further apart do not hinder each other
constexpr int LATE_MARGIN_S = 7200; // a clock is not changed by more

// What is set stays until the next of its kind.
struct Setting
{
    TaskType type;
    int kind;
};
constexpr std::array SETTINGS{
    Setting{TASK_LIGHT, 0},         Setting{TASK_VOLUME, 1},     Setting{TASK_PLAY_RADIO_FM, 2},
    Setting{TASK_STOP_RADIO_FM, 2}, Setting{TASK_ENABLE_AUX, 3}, Setting{TASK_LAN, 4},
    Setting{TASK_AMPLIFIERS, 5},    Setting{TASK_CAMERA, 6},     Setting{TASK_SET_CPU_FREQ, 7},
    Setting{TASK_GPS, 8},
};

// Whether it starts on each plain day on which it is due.
bool IsReliable(const Action& action)
{
    return action.m_startTime.isValid() && action.StartSecond().value_or(0) >= EARLIEST_S;
}

int Days(qint64 length_s)
{
    return static_cast<int>(std::min<qint64>(length_s / DAY_S + 1, LONGEST_DAYS));
}

qint64 Length_s(const PlayPlaylist& playlist)
{
    qint64 length_s = 0;
    for (const PlaylistItem& track : playlist.Tracks())
        length_s += std::max(track.duration_s, 0) + PLAYLIST_GAP_S;
    return length_s;
}

// How long its series of photos takes; 0 for a single photo.
qint64 SeriesLength_s(const ScheduleLine& line)
{
    const QStringList numbers = QString(LineFields(line.text).Parameters()).split(u',');
    if (numbers.size() < 2)
        return 0;
    const int interval_s = NumberText::ToInt(numbers[0]).value_or(0);
    const int count = NumberText::ToInt(numbers[1]).value_or(1);
    return count < 0 ? LONGEST_DAYS * DAY_S : std::max<qint64>(std::max(interval_s, 1) * qint64{count}, 1);
}

// Whether it makes a difference that it has been played before: on some day it may be joined late.
bool CanBeJoined(const Action& playlist, const std::vector<QDate>& changes, PastDays& past)
{
    const qint64 last_s = qint64{playlist.StartSecond().value_or(0)} + playlist.m_task->GetDelayable_s();
    return !IsReliable(playlist) || last_s >= DAY_S - LATE_MARGIN_S ||
           std::ranges::any_of(changes, [&](const QDate& date) { return past.IsDue(playlist, date); });
}

} // namespace

RunUp::RunUp(const std::vector<ScheduleLine>& lines)
    : m_lines(lines)
{
}

void RunUp::Need::From(const QDate& date)
{
    if (date.isValid())
        first = std::min(first, date.addDays(-MARGIN_DAYS));
}

RunUp::Actions RunUp::All() const
{
    Actions actions;
    for (const ScheduleLine& line : m_lines)
    {
        if (line.action != nullptr)
            actions.push_back(line.action.get());
    }
    return actions;
}

RunUp::Actions RunUp::Of(TaskType type) const
{
    Actions actions = All();
    std::erase_if(actions, [&](const Action* action) { return action->m_task->m_type != type; });
    return actions;
}

RunUp::Start RunUp::Before(qint64 from_ms, qint64 until_ms) const
{
    const QDate from = Moment::LocalDate(from_ms);
    Need need{from.addDays(-SETTLING_DAYS)};
    AddLengths(need, from);
    {
        DueDays dueDays;
        const QDate last = from.addDays(-MARGIN_DAYS);
        PastDays past(dueDays, last);
        AddSettings(need, past);
        AddStreams(need, past);
        AddPlayed(need, past, from_ms, until_ms);
        StartOrder order(dueDays, last, from, Moment::LocalDate(until_ms));
        need.From(order.Needed(All(), SETTLING_DAYS - MARGIN_DAYS));
    }
    if (need.isUnsettled)
    {
        need.first = std::min(need.first, from.addDays(-UNSETTLED_DAYS));
        need.first = QDate::fromJulianDay(need.first.toJulianDay() / RHYTHM_DAYS * RHYTHM_DAYS);
    }
    const qint64 first_ms = Moment::FromLocal_ms(need.first, QTime(0, 0));
    // The far passes come at the same moments, wherever it begins.
    return {first_ms - first_ms % Scheduler::FAR_INTERVAL_MS, need.areStreamsOlder};
}

// What plays, or takes photos, when the rest has settled.
void RunUp::AddLengths(Need& need, const QDate& from) const
{
    qint64 longest_s = 0;
    for (const ScheduleLine& line : m_lines)
    {
        const auto* const playlist = line.action ? qobject_cast<PlayPlaylist*>(line.action->m_task.get()) : nullptr;
        const bool takesPhotos = line.action && line.action->m_task->m_type == TASK_RECORD_PHOTO;
        const qint64 series_s = takesPhotos ? SeriesLength_s(line) : 0;
        const qint64 length_s = playlist != nullptr ? Length_s(*playlist) : series_s;
        longest_s = std::max(longest_s, length_s);
        need.isUnsettled = need.isUnsettled || series_s > 0 || length_s > DAY_S - APART_S;
    }
    need.first = from.addDays(-SETTLING_DAYS - (longest_s > 0 ? Days(longest_s) : 0));
}

void RunUp::AddSettings(Need& need, PastDays& past) const
{
    std::map<int, QDate> latest;
    for (const Setting& setting : SETTINGS)
    {
        for (const Action* action : Of(setting.type))
        {
            const QDate date = IsReliable(*action) ? past.LatestPlain(*action) : QDate();
            if (QDate& last = latest[setting.kind]; date.isValid() && (!last.isValid() || date > last))
                last = date;
        }
    }
    for (const Setting& setting : SETTINGS)
    {
        const QDate last = latest[setting.kind];
        need.From(last);
        if (last.isValid())
            continue;
        for (const Action* action : Of(setting.type))
            need.From(past.Latest(*action));
    }
}

// Whether no stream plays behind it, whatever was before.
bool RunUp::EndsStreams(const Action& stop) const
{
    return IsReliable(stop) && std::ranges::none_of(Of(TASK_PLAY_STREAM), [&](const Action* stream) {
               const int apart_s = std::abs(stop.m_startTime.secsTo(stream->m_startTime));
               return stream->m_startTime.isValid() && std::min<qint64>(apart_s, DAY_S - apart_s) <= APART_S;
           });
}

void RunUp::AddStreams(Need& need, PastDays& past) const
{
    const Actions streams = Of(TASK_PLAY_STREAM);
    if (streams.empty())
        return;
    QDate stopped;
    for (const Action* stop : Of(TASK_STOP_STREAM))
    {
        const QDate date = EndsStreams(*stop) ? past.LatestPlain(*stop) : QDate();
        if (date.isValid() && (!stopped.isValid() || date > stopped))
            stopped = date;
    }
    if (stopped.isValid())
    {
        need.From(stopped);
        return;
    }
    for (const Action* stream : streams)
    {
        const std::optional<QDate> earliest = past.Earliest(*stream);
        need.areStreamsOlder = need.areStreamsOlder || !earliest;
        need.From(earliest ? *earliest : past.Latest(*stream));
    }
    need.isUnsettled = need.isUnsettled || need.areStreamsOlder;
}

void RunUp::AddPlayed(Need& need, PastDays& past, qint64 from_ms, qint64 until_ms) const
{
    const Actions playlists = Of(TASK_PLAY_PLAYLIST);
    if (playlists.empty())
        return;
    std::vector<QDate> changes;
    for (const ClockChange& change : ClockChange::Between(from_ms - DAY_MS, until_ms + DAY_MS))
    {
        changes.push_back(Moment::LocalDate(change.moment_ms));
        changes.push_back(Moment::LocalDate(change.moment_ms - 1));
    }
    for (const Action* playlist : playlists)
    {
        if (CanBeJoined(*playlist, changes, past))
            need.From(past.Latest(*playlist));
    }
}
