#include "LookAlikes.h"
#include "Meant.h"

#include <QRegularExpression>

#include <array>

QString Meant::Number(const QString& text)
{
    static const QRegularExpression NUMBER(QStringLiteral(R"(^[+]?(-?\d+)(?:([.,])(\d+))? ?(?:%|mhz|s|sec|vol)?$)"),
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression HEXADECIMAL(QStringLiteral("^0[xX][0-9a-fA-F]+$"));
    static const QRegularExpression BINARY(QStringLiteral("^(?:0[bB])([01]+)$"));
    const QString plain = LookAlikes::Plain(text).simplified();
    constexpr int BY_PREFIX = 0;
    if (HEXADECIMAL.match(plain).hasMatch())
        return QString::number(plain.toInt(nullptr, BY_PREFIX));
    if (const auto match = BINARY.match(plain); match.hasMatch())
        return QString::number(match.captured(1).toInt(nullptr, 2));
    for (const QString& each : {plain, LookAlikes::Digits(plain)})
    {
        const auto match = NUMBER.match(each);
        if (!match.hasMatch())
            continue;
        static const QRegularExpression NOUGHTS(QStringLiteral("^0*$"));
        const bool isWhole = NOUGHTS.match(match.captured(3)).hasMatch();
        return isWhole ? match.captured(1) : match.captured(1) + u'.' + match.captured(3);
    }
    return {};
}

QString Meant::Switch(const QString& text)
{
    static const QRegularExpression ON(QStringLiteral("^(on|yes|y|true|enabled?|active)$"),
                                       QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression OFF(QStringLiteral("^(off|no|n|false|disabled?|inactive)$"),
                                        QRegularExpression::CaseInsensitiveOption);
    const QString plain = LookAlikes::Plain(text).simplified();
    if (ON.match(plain).hasMatch())
        return QStringLiteral("1");
    if (OFF.match(plain).hasMatch())
        return QStringLiteral("0");
    const QString number = LookAlikes::Digits(plain);
    return number == QLatin1String("1") || number == QLatin1String("0") ? number : QString();
}

QString Meant::PortAndPath(const QString& text)
{
    static const QRegularExpression ADDRESS(
        QStringLiteral("^(?:[a-z]+://)?(?:[^/:@]*:?[^/@]*@)?(\\[[^\\]]*\\]|[^/:]*)(?::([0-9]+))?(/.*)?$"),
        QRegularExpression::CaseInsensitiveOption);
    constexpr const char* USUAL_PORT = "554"; // of rtsp, where the address names none
    const auto match = ADDRESS.match(text);
    const QString port = match.captured(2);
    if (!match.hasMatch() || (port.isEmpty() && !text.contains(QLatin1String("://"))))
        return {};
    const QString found = (port.isEmpty() ? QString::fromLatin1(USUAL_PORT) : port) + match.captured(3);
    return match.captured(1).isEmpty() && match.captured(3).isEmpty() ? QString() : found;
}
