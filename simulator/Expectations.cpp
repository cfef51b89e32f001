#include "Expectations.h"

#include "CallText.h"

#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr int FIELD_COUNT = 3;
constexpr int HALF_DAY_MS = 12 * 60 * 60 * 1000;
const QString TIME_FORMAT = QStringLiteral("hh:mm:ss");

// Positive when received is later; the clock may pass midnight in between.
int MillisecondsLate(QTime due, QTime received)
{
    const int difference = due.msecsTo(received);
    if (difference > HALF_DAY_MS)
        return difference - 2 * HALF_DAY_MS;
    return difference < -HALF_DAY_MS ? difference + 2 * HALF_DAY_MS : difference;
}

} // namespace

bool Expectations::Request::IsOnTime() const
{
    return due && received && late_ms >= 0 && late_ms <= tolerance_ms;
}

Expectations::Expectations(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        throw std::runtime_error(qPrintable(fileName + QStringLiteral(": ") + file.errorString()));
    QTextStream stream(&file);
    QString line;
    for (int number = 1; stream.readLineInto(&line); ++number)
        AddLine(line, number);
}

void Expectations::AddLine(const QString& line, int number)
{
    const QStringList fields = line.split(QLatin1Char('\t'));
    const QTime due = QTime::fromString(fields.constFirst(), TIME_FORMAT);
    bool isNumber = true;
    const int tolerance_ms = fields.size() > FIELD_COUNT ? fields[FIELD_COUNT].toInt(&isNumber) : TOLERANCE_MS;
    if (fields.size() < FIELD_COUNT || fields.size() > FIELD_COUNT + 1 || !due.isValid() || !isNumber)
        throw std::runtime_error("expectation " + std::to_string(number) +
                                 ": time, method, arguments and perhaps a tolerance expected");
    m_requests.push_back({due, std::nullopt, CallText::Compose(fields[1], fields[2]), tolerance_ms});
}

const Expectations::Request& Expectations::Note(const Call& call)
{
    const QString text = CallText::Of(call.method, call.arguments);
    const auto awaited = std::ranges::find_if(
        m_requests, [&text](const Request& request) { return !request.received && request.text == text; });
    if (awaited == m_requests.end())
        return m_requests.emplace_back(Request{std::nullopt, call.time.time(), text});
    awaited->received = call.time.time();
    awaited->late_ms = MillisecondsLate(*awaited->due, *awaited->received);
    return *awaited;
}

bool Expectations::AreMet() const
{
    return std::ranges::all_of(m_requests, &Request::IsOnTime);
}
