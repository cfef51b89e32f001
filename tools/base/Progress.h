#pragma once

#include <QElapsedTimer>

// How far a rehearsal is: a bar on standard error once it takes longer than a second, where that is a terminal. Ctrl-C
// ends the rehearsal with what it has, the next one the tool.
class Progress final
{
public:
    Progress();

    // Takes the bar away.
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Shows the part that is done, from 0 to 1. False when the user has asked for an end.
    [[nodiscard]] bool Show(double part);

    // Takes the bar away until it is shown next: text follows.
    static void Hide();

    // Whether the user has asked for an end.
    [[nodiscard]] static bool IsInterrupted();

private:
    QElapsedTimer m_since;
};
