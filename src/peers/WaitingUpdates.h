#pragma once

#include <QObject>

// Tells the announcements of a new schedule file that waited already when a load began from those that came later: the
// former are covered by that load.
class WaitingUpdates final
{
public:
    // Whether the update manager announces a schedule file that has been installed.
    [[nodiscard]] static bool IsOfSchedule(int status, int fileType)
    {
        return status == UPDATE_COMPLETED && fileType == SCHEDULE_FILE;
    }

    // Marks the announcements that wait now, in the event loop or on their way from the bus. Later ones are not among
    // them.
    [[nodiscard]] int Mark();

    // A load that began after the mark was made covers the announcements that waited then.
    void Cover(int mark) { m_covered = mark; }

    // What was loaded is no longer in force: it covers nothing.
    void Uncover() { m_covered = NONE; }

    // Whether the announcement that is being handled is covered by a load.
    [[nodiscard]] bool IsCovered() const { return m_covered != NONE; }

private:
    static constexpr int UPDATE_COMPLETED = 0;
    static constexpr int SCHEDULE_FILE = 2;
    static constexpr int NONE = 0;

    QObject m_context; // the marks on their way die with it
    int m_mark = NONE;
    int m_covered = NONE;
};
