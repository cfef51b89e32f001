#include "Span.h"

#include "base/Moment.h"

#include <algorithm>
#include <tuple>

namespace
{

using Moment::DAY_S;

} // namespace

void Span::ForMeetings(std::vector<Span>& spans, const std::function<bool(const Meeting&)>& isEnough)
{
    std::ranges::sort(spans, {}, [](const Span& span) { return std::tuple(span.second, span.entry->line.number); });
    qint64 longest_s = 0;
    for (const Span& span : spans)
        longest_s = std::max(longest_s, span.length_s);
    longest_s = std::min<qint64>(longest_s, DAY_S - 1);
    for (size_t i = 0; i < spans.size(); ++i)
    {
        const Span& second = spans[i];
        // Backwards from the span; those behind it in the order are of the day before.
        for (size_t back = 1; back < spans.size(); ++back)
        {
            const bool isDayBefore = back > i;
            const Span& first = spans[(i + spans.size() - back) % spans.size()];
            const qint64 ahead_s = second.second - first.second + (isDayBefore ? DAY_S : 0);
            if (ahead_s > longest_s)
                break;
            const YearDays::Bits days = first.days & second.DaysBefore(isDayBefore ? 1 : 0);
            const bool isPlaying = ahead_s < first.length_s || ahead_s == 0;
            if (isPlaying && days.any() && isEnough({first, second, static_cast<int>(ahead_s), days}))
                break;
        }
    }
}
