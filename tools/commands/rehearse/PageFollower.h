#pragma once

#include "commands/RehearsalRun.h"
#include "html/PageNotes.h"

// Gathers what the page of a rehearsal shows besides it: what the check finds, what each line wants, and what is in
// force when the span of interest begins.
class PageFollower final
{
public:
    // from_ms: where the span begins. The check takes earlier dates for past.
    explicit PageFollower(qint64 from_ms);

    PageFollower(const PageFollower&) = delete;
    PageFollower& operator=(const PageFollower&) = delete;

    // For a rehearsal that the object outlives.
    [[nodiscard]] RehearsalFollowers Followers();

    // Whole after the rehearsal.
    [[nodiscard]] const PageNotes& Notes() const { return m_notes; }

private:
    void Read(const Workspace& workspace);
    void Check(const Workspace& workspace);
    void NoteWanted(const Workspace& workspace);
    void Note(const Event& event);

    const qint64 m_from_ms;
    PageNotes m_notes;
};
