#include "OwnTime.h"

#include "Event.h"
#include "base/Moment.h"

void OwnTime::Move(Event& event, const QTime& own)
{
    const qint64 own_ms = Moment::FromLocal_ms(Moment::LocalDate(event.due_ms), own);
    if (Moment::LocalTime(own_ms) == own)
        event.due_ms = own_ms;
    else
        event.leftOut = own;
}

QString OwnTime::LeftOutText(const Event& event)
{
    return QStringLiteral("the clocks are put forward over %1").arg(event.leftOut.toString(QStringLiteral("HH:mm:ss")));
}
