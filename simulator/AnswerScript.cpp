#include "AnswerScript.h"

namespace
{
constexpr int FOR_ALL_THAT_FOLLOW = 0;
}

bool Answer::IsAcceptance() const
{
    bool isNumber = false;
    return (kind == ANSWER_REPLY || kind == ANSWER_LEAVE) && values.value(0).toInt(&isNumber) == 0 && isNumber;
}

void AnswerScript::Add(const QString& interface, const QString& method, const Answer& answer, int times)
{
    std::deque<Entry>& queue = m_entries[{interface, method}];
    if (!queue.empty() && queue.back().times == FOR_ALL_THAT_FOLLOW)
        queue.pop_back();
    queue.push_back({answer, times});
}

Answer AnswerScript::Take(const QString& interface, const QString& method, const Answer& fallback)
{
    const auto found = m_entries.find({interface, method});
    if (found == m_entries.end() || found->empty())
        return fallback;
    Entry& entry = found->front();
    Answer answer = entry.answer;
    if (entry.times != FOR_ALL_THAT_FOLLOW && --entry.times == 0)
        found->pop_front();
    return answer;
}

void AnswerScript::Clear()
{
    m_entries.clear();
}
