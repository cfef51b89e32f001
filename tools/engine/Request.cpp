#include "Request.h"

#include <QLocale>
#include <QStringList>

namespace
{

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

Request Request::Announcement(qint64 moment_ms, PDD_ACTION action, bool enable)
{
    return {moment_ms, OWN_NAME, PDD_SIGNAL, {static_cast<uint>(action), enable}};
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
