#include "Patience.h"
#include "Rules.h"
#include "Startable.h"
#include "YearDays.h"
#include "engine/TaskRequests.h"

#include <algorithm>
#include <compare>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

using namespace ScheduleFields;

namespace
{

// A peer that is this slow need not be broken: the radio is, when it is switched on.
constexpr int SLOW_S = 20;

// Of the entries that are held up: nobody reads hundreds of numbers.
constexpr int MOST_NAMED = 10;

using PeerSet = std::uint64_t; // a bit for each

// What is alike in all respects in which entries hold up others, or are held up.
struct Kind
{
    int start_s; // of the day
    bool isPrepared;
    int wait_s;
    PeerSet peers;
    size_t days; // their number

    auto operator<=>(const Kind&) const = default;

    [[nodiscard]] int Begin_s() const { return start_s - (isPrepared ? Action::PREPARED_AHEAD_S : 0); }
};

int Second(const Action& action)
{
    return QTime(0, 0).secsTo(action.m_startTime);
}

// Whether what starts ahead_s after another entry can come too late if that one takes wait_s.
bool IsEndangered(bool isPrepared, int ahead_s, int wait_s)
{
    if (ahead_s == 0)
        return wait_s >= SLOW_S && !isPrepared;
    if (isPrepared)
        return ahead_s >= Action::PREPARED_AHEAD_S && wait_s > ahead_s;
    // What is watched closely already has a little time left after its start.
    return wait_s > (ahead_s <= Action::EARLY_S ? ahead_s + Action::IN_TIME_S : ahead_s);
}

// Looks for pairs of kinds instead of entries: a thousand lines may start in one second.
class Search final
{
public:
    Search(const Workspace& workspace, const std::vector<Entry>& entries, const QDate& today)
    {
        TaskRequests peers(workspace);
        YearDays days(today);
        for (const Entry& entry : entries)
        {
            if (!Startable::Is(entry))
                continue;
            const Action* const action = entry.GetAction();
            const Patience patience(peers, entry);
            m_kinds[{Second(*action), action->IsPrepared(), patience.Longest_s(), SetOf(patience.Peers()),
                     NumberOf(days.Of(*action))}]
                .push_back(entry.line.number);
        }
    }

    void Run(Findings& findings) const
    {
        for (const auto& [kind, lines] : m_kinds)
        {
            const std::vector<Kinds::const_iterator> held = HeldUp(kind);
            for (const int line : lines)
                Tell(kind, line, held, findings);
        }
    }

private:
    using Kinds = std::map<Kind, std::vector<int>>; // with the numbers of the lines, in their order

    PeerSet SetOf(const QSet<QString>& peers)
    {
        PeerSet set = 0;
        for (const QString& peer : peers)
            set |= PeerSet{1} << m_peers.try_emplace(peer, m_peers.size()).first->second;
        return set;
    }

    size_t NumberOf(const YearDays::Bits& days)
    {
        const auto [place, isNew] = m_numbers.try_emplace(days, m_days.size());
        if (isNew)
            m_days.push_back(days);
        return place->second;
    }

    // Those that can come too late because of an entry of that kind; of those that start with it, the later lines.
    [[nodiscard]] std::vector<Kinds::const_iterator> HeldUp(const Kind& kind) const
    {
        std::vector<Kinds::const_iterator> held;
        const int begin_s = kind.Begin_s();
        for (auto other = m_kinds.lower_bound({begin_s, false, 0, 0, 0});
             other != m_kinds.end() && other->first.start_s - begin_s < kind.wait_s; ++other)
        {
            const bool isLostAnyway = kind.wait_s < SLOW_S && (kind.peers & other->first.peers) != 0;
            if (!isLostAnyway && IsEndangered(other->first.isPrepared, other->first.start_s - begin_s, kind.wait_s) &&
                (m_days[kind.days] & m_days[other->first.days]).any())
                held.push_back(other);
        }
        return held;
    }

    void Tell(const Kind& kind, int line, const std::vector<Kinds::const_iterator>& held, Findings& findings) const
    {
        qsizetype count = 0;
        std::vector<std::pair<int, int>> first; // of each kind: when they start, and their lines
        for (const auto& other : held)
        {
            const std::vector<int>& lines = other->second;
            // In one second the order is that of the file.
            const bool isTogether = other->first.start_s == kind.Begin_s();
            const auto begin = isTogether ? std::ranges::upper_bound(lines, line) : lines.begin();
            const bool hasItself = !isTogether && other->first == kind;
            count += lines.end() - begin - (hasItself ? 1 : 0);
            for (auto number = begin; number != lines.end() && number - begin <= MOST_NAMED; ++number)
            {
                if (*number != line)
                    first.emplace_back(other->first.start_s, *number);
            }
        }
        if (count == 0)
            return;
        std::ranges::sort(first);
        QStringList named;
        for (size_t i = 0; i < std::min<size_t>(first.size(), MOST_NAMED); ++i)
            named.append(QString::number(first[i].second));
        findings.Add({line, FindingKind::BLOCKING, Entry::FieldName(FIELD_START_TIME),
                      QStringLiteral("may take up to %1 s, and hold up line%2 %3%4")
                          .arg(QString::number(kind.wait_s), count > 1 ? QStringLiteral("s") : QString(),
                               named.join(QStringLiteral(", ")),
                               count > MOST_NAMED ? QStringLiteral(" and %1 more").arg(count - MOST_NAMED) : QString()),
                      QStringLiteral("keep them %1 s apart").arg(kind.wait_s)});
    }

    Kinds m_kinds;
    std::map<QString, size_t> m_peers;
    std::unordered_map<YearDays::Bits, size_t> m_numbers;
    std::vector<YearDays::Bits> m_days; // by their numbers
};

} // namespace

void Rules::FindBlocking(const Workspace& workspace, const std::vector<Entry>& entries, const QDate& today,
                         Findings& findings)
{
    Search(workspace, entries, today).Run(findings);
}
