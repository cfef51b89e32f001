#include "Request.h"

#include <QLocale>
#include <QStringList>

namespace
{

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
