#include "Transcript.h"

#include "CallText.h"
#include "Console.h"
#include "PeerTable.h"
#include "Simulator.h"

#include <QTextStream>

#include <algorithm>

namespace
{

constexpr int DUE_WIDTH = 10;
constexpr int TIME_WIDTH = 13;
constexpr int LATENESS_WIDTH = 11;
constexpr int PEER_WIDTH = 8;
const QString DUE_FORMAT = QStringLiteral("HH:mm:ss");
const QString TIME_FORMAT = QStringLiteral("HH:mm:ss.zzz");
const QString PREFIX = QStringLiteral("device | ");
const QString NOTHING = QStringLiteral("-");

QString ShortName(const QString& interface)
{
    const auto* const peer = std::ranges::find_if(
        PEER_TABLE, [&interface](const PeerAddress& row) { return interface == QLatin1String(row.interface); });
    return peer != PEER_TABLE.end() ? QString::fromLatin1(peer->shortName) : interface;
}

QString TimeText(const std::optional<QTime>& time, const QString& format)
{
    return time ? time->toString(format) : NOTHING;
}

QString LatenessText(const Expectations::Request& request)
{
    if (!request.due)
        return QStringLiteral("unexpected");
    if (!request.received)
        return QStringLiteral("missing");
    return (request.late_ms < 0 ? QString() : QStringLiteral("+")) + QStringLiteral("%1 ms").arg(request.late_ms);
}

// Right-aligned, and coloured after it has its width.
QString LatenessColumn(const Expectations::Request& request)
{
    return Console::Paint(LatenessText(request).rightJustified(LATENESS_WIDTH),
                          request.IsOnTime() ? Console::GREEN : Console::RED) +
           QStringLiteral("  ");
}

} // namespace

Transcript::Transcript(std::optional<Expectations> expectations, bool quiet)
    : m_expectations(std::move(expectations))
    , m_quiet(quiet)
{
}

void Transcript::Follow(const Simulator& simulator)
{
    QObject::connect(&simulator, &Simulator::Received, [this](const Call& call) { ShowCall(call); });
    QObject::connect(&simulator, &Simulator::SignalSent,
                     [this](const QString& interface, const QString& signal, const QVariantList& values) {
                         ShowSignal(interface, signal, values);
                     });
}

void Transcript::ShowCall(const Call& call)
{
    const QString lateness = m_expectations ? LatenessColumn(m_expectations->Note(call)) : QStringLiteral("  ");
    ShowEvent(call.time.time(), lateness, call.interface, CallText::Of(call.method, call.arguments));
}

void Transcript::ShowSignal(const QString& interface, const QString& signal, const QVariantList& values) const
{
    const QString lateness = m_expectations ? QString(LATENESS_WIDTH + 2, QLatin1Char(' ')) : QStringLiteral("  ");
    ShowEvent(QTime::currentTime(), lateness, interface,
              Console::Paint(QStringLiteral("-> ") + CallText::Of(signal, values), Console::CYAN));
}

void Transcript::ShowEvent(const QTime& time, const QString& lateness, const QString& interface,
                           const QString& text) const
{
    if (!m_quiet)
        Console::Line(PREFIX + time.toString(TIME_FORMAT) + lateness + ShortName(interface).leftJustified(PEER_WIDTH) +
                      text);
}

void Transcript::ShowReport() const
{
    if (m_quiet || !m_expectations)
        return;
    const auto line = [](const QString& due, const QString& received, const QString& lateness, const QString& text) {
        Console::Line(due.leftJustified(DUE_WIDTH) + received.leftJustified(TIME_WIDTH) + lateness + text);
    };
    const std::vector<Expectations::Request>& requests = m_expectations->Requests();
    Console::Line({});
    line(QStringLiteral("scheduled"), QStringLiteral("received"),
         QStringLiteral("lateness").rightJustified(LATENESS_WIDTH) + QStringLiteral("  "), QStringLiteral("request"));
    for (const Expectations::Request& request : requests)
        line(TimeText(request.due, DUE_FORMAT), TimeText(request.received, TIME_FORMAT), LatenessColumn(request),
             request.text);
    const auto unexpected = std::ranges::count_if(requests, [](const auto& request) { return !request.due; });
    const auto scheduled = static_cast<std::ptrdiff_t>(requests.size()) - unexpected;
    Console::Line(QStringLiteral("%1 of %2 scheduled requests came within %3 ms of their second; %4 others came")
                      .arg(std::ranges::count_if(requests, &Expectations::Request::IsOnTime))
                      .arg(scheduled)
                      .arg(Expectations::TOLERANCE_MS)
                      .arg(unexpected));
}
