#include "PageFollower.h"

#include "base/Moment.h"
#include "check/Rules.h"
#include "engine/TaskRequests.h"
#include "engine/Workspace.h"
#include "words/Kinds.h"

#include <QTimeZone>

PageFollower::PageFollower(qint64 from_ms)
    : m_from_ms(from_ms)
    , m_notes{QString::fromLatin1(QTimeZone::systemTimeZoneId())}
{
}

RehearsalFollowers PageFollower::Followers()
{
    return {.noted = [this](const Event& event) { Note(event); },
            .read = [this](const Workspace& workspace) { Read(workspace); }};
}

void PageFollower::Read(const Workspace& workspace)
{
    Check(workspace);
    NoteWanted(workspace);
}

void PageFollower::Check(const Workspace& workspace)
{
    std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, workspace.File());
    const Findings findings = Rules::FindAll(workspace, lines, {.today = Moment::LocalDate(m_from_ms)});
    for (const Finding& finding : findings.All())
    {
        const FindingKindRow& row = FindingKinds::Row(finding.kind);
        m_notes.findings.push_back(
            {finding.line, Findings::IsError(finding), QString::fromLatin1(row.name), finding.Sentence()});
    }
}

void PageFollower::NoteWanted(const Workspace& workspace)
{
    // Actions are started once: those that the check has looked at may have been.
    const std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, workspace.File());
    TaskRequests requests(workspace);
    for (const ScheduleLine& line : lines)
    {
        if (line.action)
            m_notes.wanted.insert(line.number,
                                  Kinds::Of(line.action->m_task->m_type).subject(requests.Of(*line.action)));
    }
}

void PageFollower::Note(const Event& event)
{
    if (event.kind != EventKind::START || event.moment_ms >= m_from_ms)
        return;
    if (event.type == TASK_VOLUME)
        m_notes.volumeLine = event.lineNumber;
    else if (event.type == TASK_LIGHT)
        m_notes.lightLine = event.lineNumber;
}
