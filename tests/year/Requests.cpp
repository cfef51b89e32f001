#include "Requests.h"

#include <QDateTime>
#include <QProcess>

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace
{

constexpr int PATIENCE_MS = 60000;
constexpr qsizetype MOST_SHOWN = 20;

QString Shown(qint64 time_ms, const QString& text)
{
    return QDateTime::fromMSecsSinceEpoch(time_ms, Qt::UTC).toString(Qt::ISODateWithMs) + u' ' + text;
}

} // namespace

ExpectedRequests::ExpectedRequests(const QString& zone, const QString& folder, const QString& from, const QString& to,
                                   const QList<qint64>& loads_ms)
{
    QStringList arguments{QStringLiteral(OZNA_EXPECTED_REQUESTS), zone, folder, from, to};
    for (const qint64 load_ms : loads_ms)
        arguments.append(QString::number(load_ms));
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // What is preloaded into a test is none of its business.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"LD_PRELOAD"_s);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(OZNA_PYTHON), arguments);
    if (!process.waitForFinished(PATIENCE_MS) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw std::runtime_error("expected-requests");
    for (const QString& line : QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts))
        m_expected.append({line.section(u'\t', 0, 0).toLongLong(), line.section(u'\t', 1, 1).toLongLong(),
                           line.section(u'\t', 2), false});
}

bool ExpectedRequests::Meet(const Request& request)
{
    while (m_past < m_expected.size() && (m_expected[m_past].isMet || m_expected[m_past].last_ms < request.time_ms))
        ++m_past;
    for (qsizetype i = m_past; i < m_expected.size() && m_expected[i].first_ms <= request.time_ms; ++i)
    {
        Expected& expected = m_expected[i];
        if (expected.isMet || expected.text != request.text || expected.last_ms < request.time_ms)
            continue;
        expected.isMet = true;
        m_latest_ms = std::max(m_latest_ms, request.time_ms - expected.first_ms);
        return true;
    }
    return false;
}

void ExpectedRequests::Meet(const QList<Request>& found)
{
    for (const Request& request : found)
    {
        if (!Meet(request))
            m_unexpected.append(u"not expected: "_s + Shown(request.time_ms, request.text));
    }
}

QStringList ExpectedRequests::Between(qint64 from_ms, qint64 to_ms) const
{
    QStringList texts;
    for (const Expected& expected : m_expected)
    {
        if (expected.first_ms >= from_ms && expected.first_ms < to_ms)
            texts.append(expected.text);
    }
    return texts;
}

QByteArray ExpectedRequests::Difference() const
{
    QStringList wrong = m_unexpected;
    for (const Expected& expected : m_expected)
    {
        if (!expected.isMet)
            wrong.append(u"missing:      "_s + Shown(expected.first_ms, expected.text));
    }
    const qsizetype count = wrong.size();
    if (count > MOST_SHOWN)
        wrong.resize(MOST_SHOWN);
    return count == 0 ? QByteArray() : u"%1 wrong\n%2"_s.arg(count).arg(wrong.join(u'\n')).toUtf8();
}
