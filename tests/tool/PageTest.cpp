#include "PageTest.h"

#include "base/CommandLine.h"
#include "base/Moment.h"
#include "html/Page.h"
#include "text/StringUtils.h"
#include "words/EventText.h"

#include <QFile>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace
{

const QString ZONE = u"Europe/Rome"_s;
const QString SCHEDULE = u"/week & <more>.csv"_s;
const QString FROM = u"2024-03-29"_s;

qint64 MomentOf(const QString& text)
{
    return Moment::Parse_ms(u"moment"_s, text);
}

} // namespace

PageTest::PageTest(const QByteArray& lines, int days, const char* start)
{
    Write(SCHEDULE, lines);
    Write(u"/two & <three>"_s, "first & last.mp3;600\nsecond <b>.mp3;600\nthird.mp3;600\n");
    CommandLine line(u"rehearse"_s, {}, {u"FILE"_s});
    RehearsalRun::AddPlaceOptions(line);
    const QString file = m_folder.path() + SCHEDULE;
    if (!line.Parse({file, u"--tz"_s, ZONE}))
        throw std::logic_error("no help was asked for");
    RehearsalRun::SetTimeZone(line);
    const qint64 from_ms = MomentOf(*start != '\0' ? QString::fromLatin1(start) : FROM);
    const auto start_ms = *start != '\0' ? std::optional<qint64>(from_ms) : std::nullopt;
    m_follower = std::make_unique<PageFollower>(from_ms);
    m_run = std::make_unique<RehearsalRun>(line, file, start_ms, from_ms,
                                           Moment::FromLocal_ms(Moment::LocalDate(from_ms).addDays(days), QTime(0, 0)),
                                           m_follower->Followers());
}

QByteArray PageTest::Page() const
{
    return Page::Markup(m_run->Result(), m_follower->Notes()).toUtf8();
}

QStringList PageTest::Events() const
{
    QStringList lines;
    for (size_t i = 0; i < m_run->Result().events.size(); ++i)
        lines.append(EventLine(i));
    return lines;
}

QString PageTest::EventLine(size_t index) const
{
    const Event& event = m_run->Result().events[index];
    QStringList requests;
    for (const Request& request : event.requests)
        requests.append((event.isStartKnown ? Moment::TimeText(request.moment_ms) + u' ' : QString()) +
                        StringUtils::Harmless(request.Text()));
    QStringList tracks;
    for (const TrackTime& track : event.tracks)
    {
        const bool isHeard = event.end_ms == Event::OPEN || track.begin_ms < event.end_ms;
        tracks.append(Moment::TimeText(track.begin_ms) + u' ' + track.file +
                      QLatin1String(isHeard ? "" : " (not reached)"));
    }
    const QString& text = m_run->Result().lines[static_cast<size_t>(event.lineNumber) - 1].text;
    return QStringList{QString::number(index),
                       EventText::Mark(event, m_run->Result().begin_ms).replace(u", "_s, u";"_s),
                       u"Line %1, %2: "_s.arg(event.lineNumber).arg(event.taskName) + text,
                       requests.join(u';'),
                       tracks.join(u';'),
                       EventText::Risk(event)}
        .join(u'\t');
}

void PageTest::Write(const QString& name, const QByteArray& content) const
{
    QFile file(m_folder.path() + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error(file.errorString().toStdString());
}
