#include "RehearsalText.h"
#include "base/Moment.h"
#include "engine/RehearsalResult.h"
#include "words/CutText.h"
#include "words/EarlyText.h"
#include "words/EventText.h"
#include "words/LineNotes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace
{

const QString NO_VALUE;
const QString INTERRUPTED = QStringLiteral("interrupted"); // in the place of a mark

QJsonArray Arguments(const Request& request)
{
    QJsonArray values;
    for (const QVariant& argument : request.arguments)
        values.append(argument.metaType() == QMetaType::fromType<uchar>()
                          ? QJsonValue(static_cast<int>(argument.toUInt()))
                          : QJsonValue::fromVariant(argument));
    return values;
}

// A moment at which the event begins, or null where nobody knows when that was.
QJsonValue BeginMoment(const Event& event, qint64 moment_ms)
{
    return event.isStartKnown ? QJsonValue(Moment::IsoText(moment_ms)) : QJsonValue(QJsonValue::Null);
}

QJsonArray Requests(const Event& event)
{
    QJsonArray requests;
    for (const Request& request : event.requests)
        requests.append(QJsonObject{{QStringLiteral("time"), BeginMoment(event, request.moment_ms)},
                                    {QStringLiteral("peer"), request.peer},
                                    {QStringLiteral("method"), request.method},
                                    {QStringLiteral("arguments"), Arguments(request)}});
    return requests;
}

QJsonArray Tracks(const Event& event)
{
    QJsonArray tracks;
    for (const TrackTime& track : event.tracks)
        tracks.append(QJsonObject{{QStringLiteral("file"), track.file},
                                  {QStringLiteral("begin"), Moment::IsoText(track.begin_ms)},
                                  {QStringLiteral("end"), Moment::IsoText(track.end_ms)}});
    return tracks;
}

QJsonObject Object(const Event& event, qint64 from_ms)
{
    QJsonObject object{{QStringLiteral("time"), BeginMoment(event, event.moment_ms)},
                       {QStringLiteral("start"), BeginMoment(event, event.Start_ms())},
                       {QStringLiteral("due"), BeginMoment(event, event.due_ms)},
                       {QStringLiteral("kind"), EventText::KindName(event.kind)},
                       {QStringLiteral("line"), event.lineNumber},
                       {QStringLiteral("task"), event.taskName},
                       {QStringLiteral("marks"), EventText::Mark(event, from_ms)},
                       {QStringLiteral("reason"), event.reason},
                       {QStringLiteral("delay"), event.delay_s},
                       {QStringLiteral("requests"), Requests(event)}};
    if (!event.isStartKnown)
        object.insert(QStringLiteral("startKnown"), false);
    if (event.riskLine != 0)
    {
        object.insert(QStringLiteral("riskLine"), event.riskLine);
        object.insert(QStringLiteral("riskUntil"), Moment::IsoText(event.riskUntil_ms));
    }
    if (event.IsByChance())
        object.insert(QStringLiteral("chance"), static_cast<double>(event.phases_ms) / Event::PHASES_MS);
    if (!event.plays)
        return object;
    object.insert(QStringLiteral("begin"), BeginMoment(event, event.begin_ms));
    if (event.end_ms != Event::OPEN)
        object.insert(QStringLiteral("end"), Moment::IsoText(event.end_ms));
    if (event.stoppedByLine != 0)
        object.insert(QStringLiteral("stoppedByLine"), event.stoppedByLine);
    if (!event.tracks.isEmpty())
        object.insert(QStringLiteral("tracks"), Tracks(event));
    return object;
}

QJsonObject Note(int line, const QString& reason)
{
    return {{QStringLiteral("line"), line}, {QStringLiteral("reason"), reason}};
}

// The lines that do not start at their time.
QJsonArray IdleLines(const RehearsalResult& run, RehearsalText::Idle idle)
{
    QJsonArray notes;
    for (const LineNotes::Note& note : LineNotes::Of(run.lines))
        notes.append(Note(note.line, note.text));
    if (idle == RehearsalText::Idle::ON_ANY_DAY)
        return notes;
    for (const int line : LineNotes::NotDue(run))
        notes.append(Note(line, QStringLiteral("is not due in this time")));
    return notes;
}

// What a load on another day would start too early.
QJsonArray Loads(const RehearsalResult& run)
{
    QJsonArray notes;
    for (const EarlyLoads::Early& early : EarlyLoads::Of(run.lines, Moment::LocalDate(run.begin_ms)))
        notes.append(Note(early.line, EarlyText::Of(early)));
    return notes;
}

QString Quoted(const QString& value)
{
    const bool isPlain =
        !value.contains(u',') && !value.contains(u'"') && !value.contains(u'\n') && !value.contains(u'\r');
    return isPlain ? value : u'"' + QString(value).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

QString CsvRow(const QStringList& values)
{
    QStringList quoted;
    for (const QString& value : values)
        quoted.append(Quoted(value));
    return quoted.join(u',') + QStringLiteral("\r\n");
}

QString Document(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson());
}

// The library writes a whole document only, with its names in alphabetical order: "events" comes first.
class RehearsalJson final : public RehearsalText
{
public:
    RehearsalJson(qint64 from_ms, Idle idle)
        : RehearsalText(from_ms)
        , m_idle(idle)
    {
    }

    QString Head() override { return QStringLiteral("{\n    \"events\": [\n"); }

    QString Of(const Event& event) override
    {
        QString text = INDENT + Document(Object(event, m_from_ms)).chopped(1);
        text.replace(u'\n', u'\n' + INDENT);
        return std::exchange(m_separator, QStringLiteral(",\n")) + text;
    }

    QString Foot(const RehearsalResult& run) override
    {
        const QString rest = Document({{QStringLiteral("schedule"), run.file},
                                       {QStringLiteral("from"), Moment::IsoText(run.begin_ms)},
                                       {QStringLiteral("until"), Moment::IsoText(run.end_ms)},
                                       {QStringLiteral("interrupted"), run.isCut},
                                       {QStringLiteral("idle"), IdleLines(run, m_idle)},
                                       {QStringLiteral("loads"), Loads(run)}});
        return (m_separator.isEmpty() ? QString() : QStringLiteral("\n")) + QStringLiteral("    ],\n") +
               rest.mid(rest.indexOf(u'\n') + 1);
    }

private:
    static inline const QString INDENT = QStringLiteral("        ");

    const Idle m_idle;
    QString m_separator; // none before the first event
};

class RehearsalCsv final : public RehearsalText
{
public:
    using RehearsalText::RehearsalText;

    QString Head() override
    {
        return CsvRow({QStringLiteral("time"), QStringLiteral("due"), QStringLiteral("line"), QStringLiteral("task"),
                       QStringLiteral("marks"), QStringLiteral("reason"), QStringLiteral("peer"),
                       QStringLiteral("method"), QStringLiteral("arguments")});
    }

    QString Of(const Event& event) override
    {
        QString text;
        const auto append = [&](qint64 moment_ms, const QString& peer, const QString& method,
                                const QString& arguments) {
            const auto written = [&](qint64 begin_ms) {
                return event.isStartKnown ? Moment::IsoText(begin_ms) : NO_VALUE;
            };
            text += CsvRow({written(moment_ms), written(event.due_ms), QString::number(event.lineNumber),
                            event.taskName, EventText::Mark(event, m_from_ms), event.reason, peer, method, arguments});
        };
        for (const Request& request : event.requests)
            append(request.moment_ms, request.peer, request.method, request.ArgumentTexts().join(QStringLiteral(", ")));
        if (event.requests.isEmpty())
            append(event.moment_ms, NO_VALUE, NO_VALUE, NO_VALUE);
        return text;
    }

    QString Foot(const RehearsalResult& run) override
    {
        if (!run.isCut)
            return {};
        return CsvRow({Moment::IsoText(run.end_ms), NO_VALUE, NO_VALUE, NO_VALUE, INTERRUPTED, CutText::Of(run),
                       NO_VALUE, NO_VALUE, NO_VALUE});
    }
};

} // namespace

std::unique_ptr<RehearsalText> RehearsalText::Json(qint64 from_ms, Idle idle)
{
    return std::make_unique<RehearsalJson>(from_ms, idle);
}

std::unique_ptr<RehearsalText> RehearsalText::Csv(qint64 from_ms)
{
    return std::make_unique<RehearsalCsv>(from_ms);
}
