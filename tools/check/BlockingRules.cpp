#include "DueDays.h"
#include "Patience.h"
#include "Rules.h"

#include <algorithm>
#include <map>

using namespace ScheduleFields;

namespace
{

constexpr int YEAR_DAYS = 366;

// A peer that is this slow need not be broken: the radio is, when it is switched on.
constexpr int SLOW_S = 20;

// Of the entries that are held up: nobody reads hundreds of numbers.
constexpr int MOST_NAMED = 10;

struct Place
{
    const Entry* entry;
    int start_s; // of the day
    Patience patience;
};

int Second(const Action& action)
{
    return QTime(0, 0).secsTo(action.m_startTime);
}

// Whether what starts ahead_s after another entry can come too late if that one takes wait_s.
bool IsEndangered(const Action& action, int ahead_s, int wait_s)
{
    if (ahead_s == 0)
        return wait_s >= SLOW_S && !action.IsPrepared();
    if (action.IsPrepared())
        return ahead_s >= Action::PREPARED_AHEAD_S && wait_s > ahead_s;
    // What is watched closely already has a little time left after its start.
    return wait_s > (ahead_s <= Action::EARLY_S ? ahead_s + Action::IN_TIME_S : ahead_s);
}

class Search final
{
public:
    Search(const Workspace& workspace, const std::vector<Entry>& entries, const QDate& today)
        : m_today(today)
    {
        for (const Entry& entry : entries)
        {
            if (entry.GetAction() != nullptr && entry.GetAction()->m_startTime.isValid())
                m_places.push_back({&entry, Second(*entry.GetAction()), Patience(workspace, entry)});
        }
        std::ranges::stable_sort(m_places, {}, &Place::start_s);
    }

    void Run(Findings& findings)
    {
        for (const Place& place : m_places)
        {
            const int wait_s = place.patience.Longest_s();
            const QStringList held = HeldUp(place);
            if (!held.isEmpty())
                findings.Add(
                    {place.entry->line.number, FindingKind::BLOCKING, Entry::FieldName(FIELD_START_TIME),
                     QStringLiteral("may take up to %1 s, and hold up line%2 %3%4")
                         .arg(QString::number(wait_s), held.size() > 1 ? QStringLiteral("s") : QString(),
                              held.mid(0, MOST_NAMED).join(QStringLiteral(", ")),
                              held.size() > MOST_NAMED ? QStringLiteral(" and %1 more").arg(held.size() - MOST_NAMED)
                                                       : QString()),
                     QStringLiteral("keep them %1 s apart").arg(wait_s)});
        }
    }

private:
    // The numbers of the lines that can come too late because of place.
    QStringList HeldUp(const Place& place)
    {
        const int wait_s = place.patience.Longest_s();
        const Entry& entry = *place.entry;
        const int begin_s = place.start_s - (entry.GetAction()->IsPrepared() ? Action::PREPARED_AHEAD_S : 0);
        QStringList held;
        for (auto other = std::ranges::lower_bound(m_places, begin_s, {}, &Place::start_s);
             other != m_places.end() && other->start_s - begin_s < wait_s; ++other)
        {
            const int ahead_s = other->start_s - begin_s;
            // In one second the order is that of the file.
            const bool isLater = ahead_s > 0 || other->entry->line.number > entry.line.number;
            const bool isLostAnyway = wait_s < SLOW_S && place.patience.SharesAPeerWith(other->patience);
            if (other->entry != &entry && isLater && !isLostAnyway &&
                IsEndangered(*other->entry->GetAction(), ahead_s, wait_s) && MeetOnADay(entry, *other->entry))
                held.append(QString::number(other->entry->line.number));
        }
        return held;
    }

    bool MeetOnADay(const Entry& one, const Entry& other)
    {
        const std::vector<bool>& days = Days(one);
        const std::vector<bool>& otherDays = Days(other);
        for (size_t i = 0; i < days.size(); ++i)
        {
            if (days[i] && otherDays[i])
                return true;
        }
        return false;
    }

    const std::vector<bool>& Days(const Entry& entry)
    {
        const auto [place, isNew] = m_days.try_emplace(&entry);
        if (isNew)
        {
            for (int day = 0; day < YEAR_DAYS; ++day)
                place->second.push_back(m_dueDays.IsDue(*entry.GetAction(), m_today.addDays(day)));
        }
        return place->second;
    }

    const QDate m_today;
    DueDays m_dueDays;
    std::vector<Place> m_places;
    std::map<const Entry*, std::vector<bool>> m_days;
};

} // namespace

void Rules::FindBlocking(const Workspace& workspace, const std::vector<Entry>& entries, const QDate& today,
                         Findings& findings)
{
    Search(workspace, entries, today).Run(findings);
}
