#include "Html.h"

#include "text/StringUtils.h"

#include <cmath>

QString Html::Text(const QString& text)
{
    return QStringLiteral("<bdi>%1</bdi>").arg(Attribute(text));
}

QString Html::Attribute(const QString& text)
{
    return StringUtils::Harmless(text).toHtmlEscaped();
}

QString Html::Element(const char* name, const QString& classes, const QString& content)
{
    const QLatin1String tag(name);
    return u'<' + tag + (classes.isEmpty() ? QString() : QStringLiteral(" class=\"%1\"").arg(classes)) + u'>' +
           content + QStringLiteral("</") + tag + u'>';
}

QString Html::Counted(qsizetype number, const char* noun)
{
    return QStringLiteral("%1 %2%3").arg(number).arg(QLatin1String(noun), QLatin1String(number == 1 ? "" : "s"));
}

QString Html::Rows(double rows)
{
    constexpr double PARTS = 100;
    constexpr int MOST_DIGITS = 10;
    return QString::number(std::round(rows * PARTS) / PARTS, 'g', MOST_DIGITS);
}

QString Html::PerWidth(const char* name, double narrow, double wide)
{
    const QString property = QLatin1String(name) + u':';
    const QString text = QStringLiteral("--") + property + Rows(narrow);
    return Rows(wide) == Rows(narrow) ? text : text + QStringLiteral(";--wide-") + property + Rows(wide);
}
