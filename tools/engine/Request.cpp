#include "Request.h"

#include <QDBusAbstractInterface>
#include <QLocale>
#include <QStringList>

#include <numeric>

namespace
{

// What the bus library waits where a proxy has no time-out of its own, which it tells as a negative one.
constexpr int LIBRARY_TIMEOUT_MS = 25000;

const QString OWN_NAME = QStringLiteral("scheduler");
const QString PDD_SIGNAL = QStringLiteral("ExpectedPddAction");

QString Shown(const QVariant& argument)
{
    switch (argument.typeId())
    {
    case QMetaType::QString: return u'"' + argument.toString() + u'"';
    // A byte is a number on the bus, and a character to the library.
    case QMetaType::UChar: return QString::number(argument.toUInt());
    case QMetaType::Double: {
        const QString text = QString::number(argument.toDouble(), 'g', QLocale::FloatingPointShortest);
        return text.contains(u'.') || text.contains(u'e') || text.contains(u'n') ? text : text + QStringLiteral(".0");
    }
    default: return argument.toString();
    }
}

} // namespace

Request Request::Sent(qint64 moment_ms, const QDBusAbstractInterface& proxy, const QString& method,
                      const QVariantList& arguments)
{
    const int timeout_ms = proxy.timeout() < 0 ? LIBRARY_TIMEOUT_MS : proxy.timeout();
    return {moment_ms, proxy.service().section(u'.', -1), method, arguments, timeout_ms};
}

Request Request::Announcement(qint64 moment_ms, PDD_ACTION action, bool enable)
{
    return {moment_ms, OWN_NAME, PDD_SIGNAL, {static_cast<uint>(action), enable}};
}

qint64 Request::Longest_ms(const QList<Request>& requests)
{
    return std::accumulate(requests.begin(), requests.end(), qint64{0},
                           [](qint64 longest_ms, const Request& request) { return longest_ms + request.timeout_ms; });
}

QString Request::Text() const
{
    return QStringLiteral("%1 %2(%3)").arg(peer, method, ArgumentTexts().join(QStringLiteral(", ")));
}

QStringList Request::ArgumentTexts() const
{
    QStringList texts;
    for (const QVariant& argument : arguments)
        texts.append(Shown(argument));
    return texts;
}
