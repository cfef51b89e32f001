#include "RehearsalText.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "engine/RehearsalResult.h"
#include "text/StringUtils.h"
#include "words/CutText.h"
#include "words/EarlyText.h"
#include "words/EventText.h"
#include "words/LineNotes.h"

namespace
{

constexpr int LINE_WIDTH = 5;
constexpr int TASK_WIDTH = 16;
constexpr int SUBJECT_WIDTH = 30;
const QString UNKNOWN_TIME = QStringLiteral("--:--:--");
const QString INDENT = QStringLiteral("                    ");

using Terminal::Colour;

Colour ColourOf(const Event& event)
{
    return event.kind == EventKind::START ? Colour::YELLOW : Colour::RED;
}

// A column, and at least one blank behind it.
QString Column(const QString& text, int width)
{
    return text.leftJustified(width - 1) + u' ';
}

QString Requests(const Event& event)
{
    QString text;
    for (const Request& request : event.requests)
        text += INDENT + Terminal::Coloured(StringUtils::Harmless(request.Text()), Colour::GREY) + u'\n';
    return text;
}

QString Tracks(const Event& event)
{
    QString text;
    for (const TrackTime& track : event.tracks)
    {
        const bool isHeard = event.end_ms == Event::OPEN || track.begin_ms < event.end_ms;
        text += INDENT + QStringLiteral("  %1  %2%3\n")
                             .arg(Moment::TimeText(track.begin_ms), StringUtils::Harmless(track.file),
                                  isHeard ? QString() : QStringLiteral("  (not reached)"));
    }
    return text;
}

QString End(const Event& event)
{
    if (!event.plays || event.end_ms == Event::OPEN || event.type == TASK_PLAY_MESSAGE)
        return {};
    const QDate date = Moment::LocalDate(event.end_ms);
    QString text = INDENT + QStringLiteral("ends ");
    if (!event.isStartKnown || date != Moment::LocalDate(event.moment_ms))
        text += Moment::DateText(date) + u' ';
    text += Moment::TimeText(event.end_ms);
    if (event.stoppedByLine != 0)
        text += QStringLiteral(", stopped by line %1").arg(event.stoppedByLine);
    return text + u'\n';
}

QString Risk(const Event& event)
{
    const QString text = EventText::Risk(event);
    return text.isEmpty() ? text : INDENT + Terminal::Coloured(text, Colour::GREY) + u'\n';
}

// What is asked for ahead, with the time that it is for: how late another is stands in its reason.
QString Subject(const Event& event)
{
    QString subject = EventText::Subject(event);
    if (event.moment_ms >= event.due_ms || event.IsUntimed())
        return subject;
    return (subject + QStringLiteral(" for ") + Moment::TimeText(event.DueTime())).trimmed();
}

QString Row(const Event& event, qint64 from_ms)
{
    QString text = QStringLiteral("  %1  ").arg(event.isStartKnown ? Moment::TimeText(event.moment_ms) : UNKNOWN_TIME);
    text += QString::number(event.lineNumber).rightJustified(LINE_WIDTH) + QStringLiteral("  ");
    text += Column(event.taskName, TASK_WIDTH) + Column(StringUtils::Harmless(Subject(event)), SUBJECT_WIDTH);
    QStringList marks{EventText::Mark(event, from_ms), event.reason, EventText::Untimed(event)};
    marks.removeAll(QString());
    const QString mark = marks.join(QStringLiteral(": "));
    text = mark.isEmpty() ? text.trimmed() : text + Terminal::Coloured(mark, ColourOf(event));
    if (mark.isEmpty())
        text.prepend(QStringLiteral("  "));
    return text + u'\n' + Requests(event) + Tracks(event) + End(event) + Risk(event);
}

// "1 event", "2 events"
QString Counted(qint64 count, const char* thing)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(thing), count == 1 ? QString() : QStringLiteral("s"));
}

QString Note(int line, const QString& text)
{
    return QStringLiteral("  line %1%2\n").arg(line).arg(text);
}

QString IdleLines(const RehearsalResult& run)
{
    QString text;
    for (const LineNotes::Note& note : LineNotes::Of(run.lines))
        text += Note(note.line, u' ' + note.text);
    if (const std::vector<int> lines = LineNotes::NotDue(run); !lines.empty())
        text += QStringLiteral("  not due in this time: %1\n").arg(LineNotes::Numbers(lines));
    return text.isEmpty() ? text : QStringLiteral("Lines that do not always start at their time:\n") + text;
}

QString Early(const RehearsalResult& run)
{
    QString text;
    for (const EarlyLoads::Early& early : EarlyLoads::Of(run.lines, Moment::LocalDate(run.begin_ms)))
        text += Note(early.line, QStringLiteral(": ") + EarlyText::Of(early));
    return text.isEmpty() ? text : QStringLiteral("What a load at another moment would start too early:\n") + text;
}

class RehearsalTable final : public RehearsalText
{
public:
    using RehearsalText::RehearsalText;

    QString Of(const Event& event) override
    {
        QString text;
        const QString heading = event.isStartKnown
                                    ? Moment::DateText(Moment::LocalDate(event.moment_ms))
                                    : QStringLiteral("Before ") + Moment::DateText(Moment::LocalDate(m_from_ms));
        if (heading != m_heading)
        {
            text =
                (m_events == 0 ? QString() : QStringLiteral("\n")) + Terminal::Coloured(heading, Colour::BOLD) + u'\n';
            m_heading = heading;
        }
        ++m_events;
        m_requests += event.requests.size();
        return text + Row(event, m_from_ms);
    }

    QString Foot(const RehearsalResult& run) override
    {
        return (m_events == 0 ? QString() : QStringLiteral("\n")) +
               QStringLiteral("%1 %2 to %3 %4: %5, %6\n")
                   .arg(Moment::DateText(Moment::LocalDate(run.begin_ms)), Moment::TimeText(run.begin_ms),
                        Moment::DateText(Moment::LocalDate(run.end_ms)), Moment::TimeText(run.end_ms),
                        Counted(m_events, "event"), Counted(m_requests, "request")) +
               IdleLines(run) + Early(run) + (run.isCut ? CutText::Of(run) + u'\n' : QString());
    }

private:
    QString m_heading; // the last one
    qint64 m_events = 0;
    qint64 m_requests = 0;
};

} // namespace

std::unique_ptr<RehearsalText> RehearsalText::Table(qint64 from_ms)
{
    return std::make_unique<RehearsalTable>(from_ms);
}
