#include "ScheduleLoader.h"

#include "Action.h"
#include "Clock.h"
#include "process/StopRequest.h"
#include "text/SharedValues.h"
#include "text/TextFile.h"

#include <stdexcept>
#include <utility>

ScheduleLoader::ScheduleLoader(ActionList& actions, Link link, Log::Site site)
    : m_actions(actions)
    , m_link(std::move(link))
    , m_site(site)
{
}

void ScheduleLoader::Load(const QString& path) const
{
    OZNA_LOG_AT(m_site, LEVEL_NORMAL, "Loading schedule from %s...", qPrintable(path.left(Log::RECORD_SIZE)));
    try
    {
        ReadLines(path);
    }
    catch (const std::exception&)
    {
        OZNA_LOG_AT(m_site, LEVEL_ERROR, "Unexpected error while loading schedule");
    }
}

void ScheduleLoader::ReadLines(const QString& path) const
{
    TextFile file(path);
    if (!file.Open())
    {
        OZNA_LOG_AT(m_site, LEVEL_NORMAL, "No schedules programmed (schedule file not found)");
        if (!file.OpenError().isEmpty())
            OZNA_LOG_AT(m_site, LEVEL_WARNING, "Schedule file open error: %s", qPrintable(file.OpenError()));
        return;
    }
    const SharedValues shared;
    for (QString line; !StopRequest::IsMade() && file.ReadLine(line);)
        AddAction(line, file.LineNumber());
    if (StopRequest::IsMade())
        return;
    if (!file.ReadError().isEmpty())
        OZNA_LOG_AT(m_site, LEVEL_WARNING, "Schedule file read error: %s", qPrintable(file.ReadError()));
    if (!file.HasLineEnd())
        OZNA_LOG_AT(m_site, LEVEL_WARNING, "Schedule file may be cut: line %d has no line end", file.LineNumber());
    OZNA_LOG_AT(m_site, LEVEL_NORMAL, "Schedule loaded (%d tasks)", m_actions.Size());
}

void ScheduleLoader::AddAction(const QString& line, int lineNumber) const
{
    if (TextFile::IsBlankOrComment(line))
        return;
    std::unique_ptr<Action> action;
    try
    {
        action = std::make_unique<Action>(line);
        action->m_lineNumber = lineNumber;
    }
    catch (const std::exception&)
    {
        // The action has logged its own reason.
        OZNA_LOG_AT(m_site, LEVEL_WARNING, "Action ignored");
        return;
    }
    if (!action->CanRequestPddAction() || m_link(*action))
        m_actions.Append(std::move(action));
    else
        OZNA_LOG_AT(m_site, LEVEL_WARNING, "Action creation failed");
}

void ScheduleLoader::ForceWhatIsInForce() const
{
    OZNA_LOG_AT(m_site, LEVEL_NORMAL, "Finding ready actions...");
    const QTime now = Clock::TimeOfDay();
    if (Action* const light = m_actions.FindLatestStarted(TASK_LIGHT, now); light != nullptr)
    {
        OZNA_LOG_AT(m_site, LEVEL_NORMAL, "Found Light action to start");
        light->m_forced = true;
    }
    Action* const play = m_actions.FindLatestStarted(TASK_PLAY_RADIO_FM, now);
    const Action* const stop = m_actions.FindLatestStarted(TASK_STOP_RADIO_FM, now);
    if (play != nullptr && (stop == nullptr || stop->m_startTime < play->m_startTime))
    {
        OZNA_LOG_AT(m_site, LEVEL_NORMAL, "Found RadioFm action to start");
        play->m_forced = true;
    }
}
