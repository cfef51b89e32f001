#include "Request.h"

#include "KindTable.h"

#include <string_view>

using namespace Qt::StringLiterals;

namespace
{

const RequestRow& FindRow(std::string_view id)
{
    for (const auto rows : {SoundRequests(), DeviceRequests()})
    {
        for (const RequestRow& row : rows)
        {
            if (row.id == id)
                return row;
        }
    }
    qFatal("no request has the id %s", id.data());
}

QStringList ListOf(const QString& text)
{
    return text.isEmpty() ? QStringList() : QStringList(text);
}

} // namespace

Request::Request(const RequestRow& row, const Example& example)
    : m_row(&row)
    , m_example(example)
{
}

Request Request::Find(const char* id, const char* parameters)
{
    const RequestRow& row = FindRow(id);
    for (const Example& example : row.examples)
    {
        if (QByteArray(example.parameters) == QByteArray(parameters))
            return {row, example};
    }
    qFatal("%s has no example with the parameters %s", id, parameters);
}

QList<Request> Request::First()
{
    QList<Request> requests;
    for (const auto rows : {SoundRequests(), DeviceRequests()})
    {
        for (const RequestRow& row : rows)
            requests.append({row, row.examples.front()});
    }
    return requests;
}

QList<Request> Request::All()
{
    QList<Request> requests;
    for (const Request& first : First())
    {
        for (const Example& example : first.Row().examples)
            requests.append({first.Row(), example});
    }
    return requests;
}

QString Request::Schedule() const
{
    const QString name = QString::fromLatin1(FindKind(m_row->kind).name);
    return m_example.parameters ? name + u'|' + QString::fromUtf8(m_example.parameters) : name;
}

QString Request::Type() const
{
    const KindRow& kind = FindKind(m_row->kind);
    return u"%1 (%2)"_s.arg(kind.number).arg(QLatin1String(kind.logName));
}

QString Request::Call() const
{
    return Filled(m_row->call);
}

QString Request::Peer() const
{
    return Call().section(u'.', 0, 0);
}

QString Request::Method() const
{
    return Call().section(u' ', 0, 0);
}

QList<Request> Request::Before() const
{
    return m_row->first ? QList<Request>{Other(m_row->first)} : QList<Request>();
}

QStringList Request::RecordsBefore() const
{
    return m_row->first ? Other(m_row->first).Records(Outcome::ACCEPTED) : QStringList();
}

QStringList Request::Records(Outcome outcome) const
{
    const char* record = m_row->accepted;
    if (outcome == Outcome::REFUSED)
        record = m_row->refused;
    else if (outcome == Outcome::BUS_ERROR && m_row->judged == Judged::WHOLE)
        record = m_row->failed;
    return ListOf(Filled(m_row->before)) + ListOf(Filled(record));
}

bool Request::IsFollowed(Outcome outcome) const
{
    return m_row->follow == Follow::ALWAYS || (m_row->follow == Follow::ACCEPTED && outcome == Outcome::ACCEPTED);
}

Request Request::Followed() const
{
    return Other(m_row->second);
}

QStringList Request::Ended() const
{
    return m_row->trigger == Trigger::DELETION ? QStringList() : ListOf(Filled(Begun().m_row->ended));
}

QStringList Request::EndedWithPeer() const
{
    return ListOf(Filled(Begun().m_row->endedWithPeer));
}

QString Request::Filled(const char* text) const
{
    QString filled = QString::fromLatin1(text);
    int number = 0;
    for (const char* value : m_example.values)
        filled.replace(u"{%1}"_s.arg(++number), QString::fromUtf8(value));
    return filled;
}

Request Request::Other(const char* id) const
{
    return {FindRow(id), m_example};
}

Request Request::Begun() const
{
    if (m_row->trigger != Trigger::START)
        return Other(m_row->first);
    return m_row->follow == Follow::ALWAYS ? Followed() : *this;
}

QStringList Answered(QStringList records, const QString& error, int status)
{
    for (QString& record : records)
        record.replace(u"{error}"_s, error).replace(u"{status}"_s, QString::number(status));
    return records;
}

QStringList Shown(QStringList records, int maxLevel)
{
    records.removeIf([maxLevel](const QString& record) { return record.front().digitValue() > maxLevel; });
    for (QString& record : records)
    {
        if (record.endsWith(u'\n'))
            record.chop(1);
    }
    return records;
}
