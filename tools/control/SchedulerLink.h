#pragma once

#include "UserBus.h"

#include <QString>

#include <memory>

class SchedulerProxy;

// The daemon that runs on the session bus of who runs the tool. Every function throws ToolError, in words that tell
// what to do, when the daemon cannot be reached any more or does not answer.
class SchedulerLink final
{
public:
    struct State
    {
        bool isEnabled;
        QString fileName; // in the daemon's schedule folder
    };

    // Finds the daemon; does not start it. Throws ToolError when there is no bus, no daemon, or no permission.
    SchedulerLink();
    ~SchedulerLink();

    SchedulerLink(const SchedulerLink&) = delete;
    SchedulerLink& operator=(const SchedulerLink&) = delete;

    [[nodiscard]] State GetState();
    void SetEnabled(bool isEnabled);
    void SetScheduleFile(const QString& name);
    void Reload();

    [[nodiscard]] qint64 ProcessId();

    // For its signals; belongs to the object.
    [[nodiscard]] SchedulerProxy& Proxy() { return *m_proxy; }
    [[nodiscard]] const UserBus& Bus() const { return m_bus; }

private:
    const UserBus m_bus;
    std::unique_ptr<SchedulerProxy> m_proxy;
};
