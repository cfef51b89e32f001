#include "LinePhrases.h"

#include "engine/TaskRequests.h"
#include "text/StringUtils.h"
#include "words/Kinds.h"
#include "words/StartText.h"

LinePhrases::LinePhrases(const Workspace& workspace, const std::vector<ScheduleLine>& lines)
    : m_workspace(workspace)
    , m_lines(lines)
{
}

QString LinePhrases::Of(int number)
{
    QString& phrase = m_phrases[number];
    if (!phrase.isEmpty())
        return phrase;
    Action& action = *m_lines.at(static_cast<size_t>(number) - 1).action;
    const Task& task = *action.m_task;
    // An action is started once.
    phrase =
        StringUtils::Harmless(QStringLiteral("line %1, %2, %3")
                                  .arg(QString::number(number), StartText::Time(action),
                                       Kinds::Of(task.m_type).phrase(task, TaskRequests::Of(m_workspace, action))));
    return phrase;
}

QTime LinePhrases::StartTime(int number) const
{
    return m_lines.at(static_cast<size_t>(number) - 1).action->m_startTime;
}
