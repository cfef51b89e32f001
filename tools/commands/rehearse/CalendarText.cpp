#include "CalendarEntry.h"
#include "base/Moment.h"
#include "base/ToolError.h"
#include "commands/RehearsalText.h"
#include "engine/RehearsalResult.h"
#include "text/StringUtils.h"

#include <QDateTime>
#include <QStringList>
#include <QTimeZone>

#include <cstdlib>
#include <memory>

#include <libical/ical.h>

// Written by libical, which knows how texts are escaped and long lines are folded.

namespace
{

constexpr const char* PRODUCT = "-//ozna-schedule//rehearse//EN";
constexpr const char* VERSION = "2.0";
constexpr const char* END = "END:VCALENDAR\r\n";

struct FreeComponent
{
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, FreeComponent>;

Component NewComponent(icalcomponent_kind kind)
{
    Component component(icalcomponent_new(kind));
    if (component == nullptr)
        throw ToolError(QStringLiteral("--ics: the calendar cannot be made"));
    return component;
}

// Takes property, which the component then owns.
void Add(const Component& component, icalproperty* property)
{
    if (property == nullptr)
        throw ToolError(QStringLiteral("--ics: the calendar cannot be made"));
    icalcomponent_add_property(component.get(), property);
}

void AddExtension(const Component& component, const char* name, const QString& value)
{
    icalproperty* const property = icalproperty_new_x(value.toUtf8().constData());
    if (property != nullptr)
        icalproperty_set_x_name(property, name);
    Add(component, property);
}

QString Written(const Component& component)
{
    const std::unique_ptr<char, decltype(&std::free)> text(icalcomponent_as_ical_string_r(component.get()), &std::free);
    if (text == nullptr)
        throw ToolError(QStringLiteral("--ics: the calendar cannot be written"));
    return QString::fromUtf8(text.get());
}

// Without the library's own conversion, whose moments have the size of those that it was compiled with.
icaltimetype Utc(qint64 moment_ms)
{
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(moment_ms, Qt::UTC);
    icaltimetype time = icaltime_null_time();
    time.year = moment.date().year();
    time.month = moment.date().month();
    time.day = moment.date().day();
    time.hour = moment.time().hour();
    time.minute = moment.time().minute();
    time.second = moment.time().second();
    time.zone = icaltimezone_get_utc_timezone();
    return time;
}

// Line by line: line ends are for the library to write, other control characters are for nobody.
QByteArray Harmless(const QString& text)
{
    QStringList lines = text.split(u'\n');
    for (QString& line : lines)
        line = StringUtils::Harmless(line);
    return lines.join(u'\n').toUtf8();
}

class CalendarText final : public RehearsalText
{
public:
    CalendarText(qint64 from_ms, qint64 until_ms, const QString& file)
        : RehearsalText(from_ms)
        , m_name(file)
        , m_entries(file, from_ms, until_ms)
    {
    }

    QString Head() override
    {
        const Component calendar = NewComponent(ICAL_VCALENDAR_COMPONENT);
        Add(calendar, icalproperty_new_version(VERSION));
        Add(calendar, icalproperty_new_prodid(PRODUCT));
        Add(calendar, icalproperty_new_method(ICAL_METHOD_PUBLISH));
        AddExtension(calendar, "X-WR-CALNAME", QString::fromUtf8(Harmless(m_name)));
        // In which calendars may show it, if they know the zone.
        if (const QByteArray zone = QTimeZone::systemTimeZoneId(); QTimeZone::isTimeZoneIdAvailable(zone))
            AddExtension(calendar, "X-WR-TIMEZONE", QString::fromLatin1(zone));
        return Written(calendar).chopped(static_cast<qsizetype>(qstrlen(END)));
    }

    QString Of(const Event& event) override
    {
        const std::optional<CalendarEntry> entry = m_entries.Of(event);
        return entry ? Written(Entry(*entry)) : QString();
    }

    QString Foot(const RehearsalResult& run) override
    {
        return (run.isCut ? Written(Entry(m_entries.OfCut(run))) : QString()) + QString::fromLatin1(END);
    }

private:
    [[nodiscard]] Component Entry(const CalendarEntry& entry) const
    {
        Component component = NewComponent(ICAL_VEVENT_COMPONENT);
        Add(component, icalproperty_new_uid(entry.identifier.toUtf8().constData()));
        Add(component, icalproperty_new_dtstamp(Utc(m_now_ms)));
        Add(component, icalproperty_new_dtstart(Utc(entry.begin_ms)));
        if (entry.end_ms)
            Add(component, icalproperty_new_dtend(Utc(*entry.end_ms)));
        Add(component, icalproperty_new_summary(Harmless(entry.summary).constData()));
        Add(component, icalproperty_new_description(Harmless(entry.description).constData()));
        if (!entry.category.isEmpty())
            Add(component, icalproperty_new_categories(entry.category.toUtf8().constData()));
        Add(component, icalproperty_new_status(entry.takesPlace ? ICAL_STATUS_CONFIRMED : ICAL_STATUS_CANCELLED));
        // Nobody is busy meanwhile.
        Add(component, icalproperty_new_transp(ICAL_TRANSP_TRANSPARENT));
        return component;
    }

    const QString m_name;
    const qint64 m_now_ms = Moment::Now_ms();
    CalendarEntries m_entries;
};

} // namespace

std::unique_ptr<RehearsalText> RehearsalText::Calendar(qint64 from_ms, qint64 until_ms, const QString& file)
{
    return std::make_unique<CalendarText>(from_ms, until_ms, file);
}
