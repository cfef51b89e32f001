#pragma once

#include "commands/RehearsalRun.h"
#include "commands/rehearse/PageFollower.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <memory>

// A schedule that is rehearsed for some days in March 2024, in which the clocks of Europe/Rome are put forward, and the
// page of it.
class PageTest final
{
public:
    // lines: of the schedule. start: the daemon loads it then; empty: it has been running for long.
    PageTest(const QByteArray& lines, int days, const char* start = "");

    [[nodiscard]] const RehearsalRun& Run() const { return *m_run; }
    [[nodiscard]] const PageNotes& Notes() const { return m_follower->Notes(); }
    [[nodiscard]] QByteArray Page() const;

    // What the page has to tell of each event, as PageScripts::EVENTS reports it.
    [[nodiscard]] QStringList Events() const;

private:
    [[nodiscard]] QString EventLine(size_t index) const;
    void Write(const QString& name, const QByteArray& content) const;

    QTemporaryDir m_folder;
    std::unique_ptr<PageFollower> m_follower;
    std::unique_ptr<RehearsalRun> m_run;
};
