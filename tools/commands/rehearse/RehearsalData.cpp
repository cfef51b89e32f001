#include "RehearsalText.h"
#include "base/Moment.h"
#include "engine/RehearsalResult.h"
#include "words/EventText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

const QString NO_VALUE;

QJsonArray Arguments(const Request& request)
{
    QJsonArray values;
    for (const QVariant& argument : request.arguments)
        values.append(argument.metaType() == QMetaType::fromType<uchar>()
                          ? QJsonValue(static_cast<int>(argument.toUInt()))
                          : QJsonValue::fromVariant(argument));
    return values;
}

QJsonArray Requests(const Event& event)
{
    QJsonArray requests;
    for (const Request& request : event.requests)
        requests.append(QJsonObject{{QStringLiteral("time"), Moment::IsoText(request.moment_ms)},
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
    QJsonObject object{{QStringLiteral("time"), Moment::IsoText(event.moment_ms)},
                       {QStringLiteral("due"), Moment::IsoText(event.due_ms)},
                       {QStringLiteral("kind"), EventText::KindName(event.kind)},
                       {QStringLiteral("line"), event.lineNumber},
                       {QStringLiteral("task"), event.taskName},
                       {QStringLiteral("marks"), EventText::Mark(event, from_ms)},
                       {QStringLiteral("reason"), event.reason},
                       {QStringLiteral("delay"), event.delay_s},
                       {QStringLiteral("requests"), Requests(event)}};
    if (event.riskLine != 0)
    {
        object.insert(QStringLiteral("riskLine"), event.riskLine);
        object.insert(QStringLiteral("riskUntil"), Moment::IsoText(event.riskUntil_ms));
    }
    if (!event.plays)
        return object;
    object.insert(QStringLiteral("begin"), Moment::IsoText(event.begin_ms));
    if (event.end_ms != Event::OPEN)
        object.insert(QStringLiteral("end"), Moment::IsoText(event.end_ms));
    if (event.stoppedByLine != 0)
        object.insert(QStringLiteral("stoppedByLine"), event.stoppedByLine);
    if (!event.tracks.isEmpty())
        object.insert(QStringLiteral("tracks"), Tracks(event));
    return object;
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

} // namespace

QString RehearsalText::Json(const RehearsalResult& run)
{
    QJsonArray events;
    for (const Event& event : run.events)
        events.append(Object(event, run.begin_ms));
    const QJsonObject whole{{QStringLiteral("schedule"), run.file},
                            {QStringLiteral("from"), Moment::IsoText(run.begin_ms)},
                            {QStringLiteral("until"), Moment::IsoText(run.end_ms)},
                            {QStringLiteral("events"), events}};
    return QString::fromUtf8(QJsonDocument(whole).toJson());
}

QString RehearsalText::Csv(const RehearsalResult& run)
{
    QString text = CsvRow({QStringLiteral("time"), QStringLiteral("line"), QStringLiteral("task"),
                           QStringLiteral("marks"), QStringLiteral("reason"), QStringLiteral("peer"),
                           QStringLiteral("method"), QStringLiteral("arguments")});
    for (const Event& event : run.events)
    {
        const auto append = [&](qint64 moment_ms, const QString& peer, const QString& method,
                                const QString& arguments) {
            text += CsvRow({Moment::IsoText(moment_ms), QString::number(event.lineNumber), event.taskName,
                            EventText::Mark(event, run.begin_ms), event.reason, peer, method, arguments});
        };
        for (const Request& request : event.requests)
            append(request.moment_ms, request.peer, request.method, request.ArgumentTexts().join(QStringLiteral(", ")));
        if (event.requests.isEmpty())
            append(event.moment_ms, NO_VALUE, NO_VALUE, NO_VALUE);
    }
    return text;
}
