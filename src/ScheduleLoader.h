#pragma once

#include "ActionList.h"
#include "Log.h"

#include <QString>

#include <functional>

// Loads a schedule, and finds what should be in force already. Logs on behalf of its caller.
class ScheduleLoader final
{
public:
    // Links an action that can request a PDD action to who owns the list, before the list takes it; false when it
    // cannot. The others have nothing to tell, and a link takes as much memory as an action and its task do.
    using Link = std::function<bool(const Action& action)>;

    // actions: the list that is filled, which outlives the loader. site: the caller's.
    ScheduleLoader(ActionList& actions, Link link, Log::Site site);

    // Takes over the actions of the file's lines, in their order. A rejected line is dropped, and leaves a record of
    // level 2 behind that of its reason. Once the process is to end nothing more is read. Never throws.
    void Load(const QString& path) const;

    // Forces the light and the radio that should be on, by the time of day alone.
    void ForceWhatIsInForce() const;

private:
    void ReadLines(const QString& path) const;
    void AddAction(const QString& line, int lineNumber) const;

    ActionList& m_actions;
    const Link m_link;
    const Log::Site m_site;
};
