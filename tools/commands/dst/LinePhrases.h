#pragma once

#include "engine/ScheduleLine.h"

#include <QString>
#include <QTime>

#include <map>
#include <vector>

// Each line of a file in a few words. No rehearsal may live while Of runs.
class LinePhrases final
{
public:
    // lines: of that workspace; both outlive it. Their actions are started, and of no use afterwards.
    LinePhrases(const Workspace& workspace, const std::vector<ScheduleLine>& lines);

    // "line 3, 02:30:00, switch the lights off". number: of a line that has an action.
    [[nodiscard]] QString Of(int number);

    // Of such a line: when it is to start.
    [[nodiscard]] QTime StartTime(int number) const;

private:
    const Workspace& m_workspace;
    const std::vector<ScheduleLine>& m_lines;
    std::map<int, QString> m_phrases; // by the number of the line
};
