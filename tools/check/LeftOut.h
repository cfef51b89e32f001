#pragma once

#include "Entry.h"

#include <QSet>
#include <QString>

// The lines whose task is not done as it was meant: rejected ones, entries that a "#" makes a comment, parameters that
// cannot be read. A finding of their own tells it, so that nobody misses what they were to begin or stop.
class LeftOut final
{
public:
    // entries: of the lines.
    LeftOut(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries);

    // Whether one of them has that identifier.
    [[nodiscard]] bool Names(const QString& identifier) const { return m_words.contains(identifier); }

    // Whether one of them may be a stop of the radio or of a stream.
    [[nodiscard]] bool HasStop() const { return m_hasStop; }

    // Whether a skipped line looks like an entry that a "#" in it makes a comment.
    [[nodiscard]] static bool IsCommented(const ScheduleLine& line);

private:
    void Take(const QString& text);

    QSet<QString> m_words;
    bool m_hasStop = false;
};
