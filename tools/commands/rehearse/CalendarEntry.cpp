#include "CalendarEntry.h"

#include "base/Moment.h"
#include "engine/Event.h"
#include "engine/RehearsalResult.h"
#include "words/CutText.h"
#include "words/EventText.h"
#include "words/Kinds.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace
{

constexpr qsizetype NAME_DIGITS = 12;

// Where the rehearsal ends, nobody knows for how long. A playlist's tracks tell it.
bool GoesOn(const Event& event)
{
    return event.plays && event.end_ms == Event::OPEN && event.type != TASK_PLAY_MESSAGE && event.tracks.isEmpty();
}

QString DigestOf(const QString& name)
{
    const QByteArray digest = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QString::fromLatin1(digest.first(NAME_DIGITS));
}

} // namespace

CalendarEntries::CalendarEntries(const QString& file, qint64 from_ms, qint64 until_ms)
    : m_name(QFileInfo(file).fileName())
    , m_from_ms(from_ms)
    , m_until_ms(until_ms)
{
}

std::optional<CalendarEntry> CalendarEntries::Of(const Event& event)
{
    if (event.kind == EventKind::FOLLOWUP)
        return {};
    CalendarEntry entry;
    entry.identifier = Identifier(event);
    entry.begin_ms = Begin_ms(event);
    entry.end_ms = End_ms(event, entry.begin_ms);
    entry.takesPlace = event.kind == EventKind::START;
    // What began before the span is an entry like any other.
    const QString mark = EventText::Mark(event, event.moment_ms);
    const QString what = (QString::fromUtf8(Kinds::Of(event.type).label) + u' ' + EventText::Subject(event)).trimmed();
    entry.summary = mark.isEmpty() ? what : mark + QStringLiteral(": ") + what;
    entry.category = mark.toUpper();
    entry.description = Description(event);
    return entry;
}

CalendarEntry CalendarEntries::OfCut(const RehearsalResult& run) const
{
    CalendarEntry entry;
    entry.begin_ms = run.end_ms / Moment::MS_PER_S * Moment::MS_PER_S;
    entry.identifier =
        QStringLiteral("%1-cut-%2@ozna-schedule").arg(entry.begin_ms / Moment::MS_PER_S).arg(DigestOf(m_name));
    entry.summary = QStringLiteral("Schedule incomplete from here on");
    entry.description = CutText::Of(run);
    entry.category = QStringLiteral("INCOMPLETE");
    return entry;
}

// When it is heard or done. What does not take place was to be then.
qint64 CalendarEntries::Begin_ms(const Event& event) const
{
    const qint64 begin_ms = !event.isStartKnown              ? m_from_ms
                            : event.kind != EventKind::START ? event.due_ms
                            : event.plays                    ? event.begin_ms
                                                             : event.Start_ms();
    return begin_ms / Moment::MS_PER_S * Moment::MS_PER_S;
}

// Neither the line's number nor its parameters: a changed line takes the place of what it was. What a load forces comes
// besides the start itself.
QString CalendarEntries::Identifier(const Event& event)
{
    const QString start = QStringLiteral("%1-%2%3").arg(
        event.isStartKnown ? QString::number(event.due_ms / Moment::MS_PER_S) : QStringLiteral("before"),
        QString::number(event.type),
        event.isForced ? QStringLiteral("-forced-%1").arg(event.moment_ms / Moment::MS_PER_S) : QString());
    return QStringLiteral("%1-%2-%3@ozna-schedule").arg(start, QString::number(++m_numbers[start]), DigestOf(m_name));
}

std::optional<qint64> CalendarEntries::End_ms(const Event& event, qint64 begin_ms) const
{
    // The length of a message is not known.
    if (!event.plays || event.type == TASK_PLAY_MESSAGE)
        return {};
    const qint64 end_ms = GoesOn(event)                 ? m_until_ms
                          : event.end_ms == Event::OPEN ? event.tracks.last().end_ms
                                                        : event.end_ms;
    return end_ms > begin_ms ? std::optional(end_ms / Moment::MS_PER_S * Moment::MS_PER_S) : std::nullopt;
}

QString CalendarEntries::Description(const Event& event) const
{
    QStringList lines;
    if (!event.reason.isEmpty())
        lines.append(event.reason);
    for (const TrackTime& track : event.tracks)
        lines.append(Moment::TimeText(track.begin_ms) + u' ' + track.file);
    if (GoesOn(event))
        lines.append(QStringLiteral("goes on at the end of the rehearsal"));
    if (event.stoppedByLine != 0)
        lines.append(QStringLiteral("stopped by line %1").arg(event.stoppedByLine));
    if (const QString risk = EventText::Risk(event); !risk.isEmpty())
        lines.append(risk);
    lines.append(QStringLiteral("%1, line %2 of %3").arg(event.taskName).arg(event.lineNumber).arg(m_name));
    return lines.join(u'\n');
}
