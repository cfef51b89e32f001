#pragma once

#include "ScheduleLine.h"

#include <QDate>

#include <vector>

class PastDays;

// How long before a moment a rehearsal has to begin so that at that moment the daemon is in the state of one that
// loaded the schedule long ago. Only what lasts counts: what plays, what is set, which playlists have been played.
//
// Lines by the day of the week alone settle in little more than a week. What is due on few days lasts from the last of
// them on, unless something else has replaced it since.
class RunUp final
{
public:
    struct Start
    {
        qint64 moment_ms;     // since 1970-01-01 00:00:00 UTC
        bool areStreamsOlder; // a stream that plays then may have begun even earlier: nothing has ever stopped it
    };

    // lines: of the schedule; outlive the object.
    explicit RunUp(const std::vector<ScheduleLine>& lines);

    // For a rehearsal from from_ms up to until_ms. Uses DueDays, of which only one may live.
    [[nodiscard]] Start Before(qint64 from_ms, qint64 until_ms) const;

private:
    // What was needed so far.
    struct Need
    {
        QDate first;
        bool isUnsettled = false; // what happens may never come to be the same from week to week
        bool areStreamsOlder = false;

        void From(const QDate& date);
    };

    using Actions = std::vector<const Action*>;

    [[nodiscard]] Actions All() const;
    [[nodiscard]] Actions Of(TaskType type) const;
    void AddLengths(Need& need, const QDate& from) const;
    void AddSettings(Need& need, PastDays& past) const;
    void AddStreams(Need& need, PastDays& past) const;
    void AddPlayed(Need& need, PastDays& past, qint64 from_ms, qint64 until_ms) const;
    [[nodiscard]] bool EndsStreams(const Action& stop) const;

    const std::vector<ScheduleLine>& m_lines;
};
