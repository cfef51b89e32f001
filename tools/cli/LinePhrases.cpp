#include "LinePhrases.h"

#include "Phrase.h"
#include "TaskRequests.h"
#include "Terminal.h"
#include "peers/SoundManager.h"

LinePhrases::LinePhrases(const std::vector<ScheduleLine>& lines)
    : m_lines(lines)
{
}

QString LinePhrases::Of(int number)
{
    QString& phrase = m_phrases[number];
    if (!phrase.isEmpty())
        return phrase;
    Action& action = *m_lines.at(static_cast<size_t>(number) - 1).action;
    // An action is started once.
    phrase = Terminal::Harmless(QStringLiteral("line %1, %2, %3")
                                    .arg(QString::number(number), SoundManager::FormatTime(action.m_startTime),
                                         Phrase::Of(*action.m_task, TaskRequests::Of(action))));
    return phrase;
}
