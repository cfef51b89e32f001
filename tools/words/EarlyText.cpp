#include "EarlyText.h"

#include "base/Moment.h"

namespace
{

QString TimeText(int second)
{
    return QTime(0, 0).addSecs(second).toString(QStringLiteral("HH:mm:ss"));
}

} // namespace

QString EarlyText::Of(const EarlyLoads::Early& early)
{
    const QString day = Moment::DateText(early.day);
    if (early.isPlaylist)
        return QStringLiteral("a load on another day starts it at 00:00:00 on %1, as if late from %2 of the day before")
            .arg(day, TimeText(early.from_s));
    return QStringLiteral("a load on another day, from %1 %2, starts it at 00:00:00 on %3, %4 early")
        .arg(TimeText(early.from_s),
             early.until_s == Moment::DAY_S ? QStringLiteral("on") : QStringLiteral("to ") + TimeText(early.until_s),
             day, Moment::SpanText(early.from_s));
}
