#include "StatusText.h"

#include "ControlOptions.h"
#include "Log.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "text/StringUtils.h"
#include "words/EventText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

using Terminal::Colour;

constexpr int LABEL_WIDTH = 10;

QString MomentWords(qint64 moment_ms)
{
    return Moment::DateText(Moment::LocalDate(moment_ms)) + u' ' + Moment::TimeText(moment_ms);
}

QString Row(const char* label, const QString& text)
{
    return QString::fromLatin1(label).leftJustified(LABEL_WIDTH) + text + u'\n';
}

QString EventWords(const Event& event)
{
    const QString subject = StringUtils::Harmless(EventText::Subject(event));
    const QString mark = EventText::Mark(event, event.moment_ms);
    return event.taskName + (subject.isEmpty() ? QString() : u' ' + subject) +
           QStringLiteral("  (line %1%2)")
               .arg(event.lineNumber)
               .arg(mark.isEmpty() ? mark : QStringLiteral(", ") + mark);
}

QString StateRow(const StatusReport& report)
{
    QString text = ControlOptions::StateWords(report.state);
    if (report.since_ms)
        text += QStringLiteral("; runs since ") + MomentWords(*report.since_ms);
    return Row("daemon", text + QStringLiteral(" (process %1)").arg(report.processId));
}

QString FileRows(const StatusReport& report)
{
    if (!report.unreadable.isEmpty())
        return Row("file", Terminal::Coloured(StringUtils::Harmless(report.unreadable), Colour::RED));
    QString text = Row("file", report.held.Words(report.path));
    if (report.MayBeOutdated())
        text += Row("", Terminal::Coloured(QStringLiteral("changed %1: if nobody has had it loaded since, as deploy "
                                                          "does, what stood there before runs")
                                               .arg(MomentWords(*report.changed_ms)),
                                           Colour::YELLOW));
    return text;
}

QString PlayRows(const StatusReport& report)
{
    if (!report.state.isEnabled)
        return Row("next", QStringLiteral("nothing: the daemon is disabled"));
    QString text;
    for (const Event& event : report.playing)
        text += Row("plays", QStringLiteral("%1, since %2").arg(EventWords(event), MomentWords(event.begin_ms)));
    if (!report.next)
        return text + Row("next", QStringLiteral("nothing"));
    const Event& next = *report.next;
    const qint64 start_ms = next.Start_ms();
    return text +
           Row("next", QStringLiteral("%1, in %2: %3")
                           .arg(MomentWords(start_ms), Moment::SpanText((start_ms - report.now_ms) / Moment::MS_PER_S),
                                EventWords(next)));
}

QString PeerRows(const StatusReport& report)
{
    QStringList present;
    QStringList absent;
    for (const PeerPresence::Peer& peer : report.peers)
    {
        if (peer.isPresent)
            present.append(peer.name);
        else
            absent.append(peer.name);
    }
    const QString separator = QStringLiteral(", ");
    QString text = Row("peers", present.isEmpty() ? QStringLiteral("none") : present.join(separator));
    if (!absent.isEmpty())
        text +=
            Row("", Terminal::Coloured(QStringLiteral("not on the bus: ") + absent.join(separator), Colour::YELLOW));
    return text;
}

QString LevelWord(unsigned int level)
{
    return level == LEVEL_ERROR ? QStringLiteral("error") : QStringLiteral("warning");
}

QString RecordRows(const StatusReport& report)
{
    if (!report.records)
        return Row("records", QStringLiteral("there is no journal here: --log FILE reads a log file"));
    if (report.records->empty())
        return Row("records", QStringLiteral("no errors, no warnings in %1").arg(report.log));
    QString text;
    for (const LoggedRecord& record : *report.records)
    {
        const QString when = record.moment_ms ? MomentWords(*record.moment_ms) + u' ' : QString();
        text += Row(text.isEmpty() ? "records" : "",
                    when +
                        Terminal::Coloured(LevelWord(record.level),
                                           record.level == LEVEL_ERROR ? Colour::RED : Colour::YELLOW) +
                        u' ' + StringUtils::Harmless(record.text));
    }
    return text;
}

QJsonObject EventObject(const Event& event)
{
    return {{QStringLiteral("task"), event.taskName},
            {QStringLiteral("subject"), EventText::Subject(event)},
            {QStringLiteral("line"), event.lineNumber},
            {QStringLiteral("due"), Moment::IsoText(event.due_ms)},
            {QStringLiteral("start"), Moment::IsoText(event.Start_ms())}};
}

QJsonArray RecordArray(const std::vector<LoggedRecord>& records)
{
    QJsonArray array;
    for (const LoggedRecord& record : records)
    {
        QJsonObject object{{QStringLiteral("level"), static_cast<int>(record.level)},
                           {QStringLiteral("text"), record.text}};
        if (record.moment_ms)
            object.insert(QStringLiteral("time"), Moment::IsoText(*record.moment_ms));
        array.append(object);
    }
    return array;
}

} // namespace

QString StatusText::Lines(const StatusReport& report)
{
    return StateRow(report) + FileRows(report) + PlayRows(report) + PeerRows(report) + RecordRows(report);
}

QString StatusText::Json(const StatusReport& report)
{
    QJsonObject object{{QStringLiteral("enabled"), report.state.isEnabled},
                       {QStringLiteral("file"), report.state.fileName},
                       {QStringLiteral("path"), report.path},
                       {QStringLiteral("process"), report.processId},
                       {QStringLiteral("taken"), report.held.taken},
                       {QStringLiteral("rejected"), report.held.rejected},
                       {QStringLiteral("mayBeOutdated"), report.MayBeOutdated()}};
    if (report.since_ms)
        object.insert(QStringLiteral("since"), Moment::IsoText(*report.since_ms));
    if (!report.unreadable.isEmpty())
        object.insert(QStringLiteral("unreadable"), report.unreadable);
    QJsonArray playing;
    for (const Event& event : report.playing)
        playing.append(EventObject(event));
    object.insert(QStringLiteral("playing"), playing);
    if (report.next)
        object.insert(QStringLiteral("next"), EventObject(*report.next));
    QJsonObject peers;
    for (const PeerPresence::Peer& peer : report.peers)
        peers.insert(peer.name, peer.isPresent);
    object.insert(QStringLiteral("peers"), peers);
    if (report.records)
        object.insert(QStringLiteral("records"), RecordArray(*report.records));
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
}
