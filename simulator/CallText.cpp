#include "CallText.h"

#include <QDBusArgument>
#include <QLocale>
#include <QStringList>

namespace
{

constexpr int HEXADECIMAL = 16;
const QLatin1Char ZERO('0');

QString HexText(uint code)
{
    return QStringLiteral("%1").arg(code, 2, HEXADECIMAL, ZERO);
}

QString Quoted(const QString& text)
{
    QString quoted = QStringLiteral("\"");
    for (const QChar character : text)
    {
        if (character.category() == QChar::Other_Control)
        {
            quoted += QStringLiteral("\\x") + HexText(character.unicode());
            continue;
        }
        if (character == QLatin1Char('"') || character == QLatin1Char('\\'))
            quoted += QLatin1Char('\\');
        quoted += character;
    }
    return quoted + QLatin1Char('"');
}

QString DoubleText(double number)
{
    const QString text = QString::number(number, 'g', QLocale::FloatingPointShortest);
    const bool isWhole = !text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('e'));
    return isWhole ? text + QStringLiteral(".0") : text;
}

QString Text(const QVariant& argument)
{
    switch (argument.typeId())
    {
    case QMetaType::QString: return Quoted(argument.toString());
    case QMetaType::Double: return DoubleText(argument.toDouble());
    case QMetaType::UChar: return QStringLiteral("0x") + HexText(argument.toUInt());
    default: break;
    }
    if (argument.metaType() == QMetaType::fromType<QDBusArgument>())
        return QLatin1Char('<') + argument.value<QDBusArgument>().currentSignature() + QLatin1Char('>');
    return argument.toString();
}

} // namespace

QString CallText::Of(const QString& member, const QVariantList& arguments)
{
    QStringList texts;
    for (const QVariant& argument : arguments)
        texts.append(Text(argument));
    return Compose(member, texts.join(QStringLiteral(", ")));
}

QString CallText::Compose(const QString& member, const QString& arguments)
{
    return member + QLatin1Char('(') + arguments + QLatin1Char(')');
}
