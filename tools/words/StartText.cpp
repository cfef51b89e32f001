#include "StartText.h"

#include "engine/Phases.h"
#include "engine/StartTime.h"
#include "peers/SoundManager.h"

QString StartText::Time(const Action& action)
{
    const QTime time = StartTime::Of(action);
    if (time.isValid())
        return SoundManager::FormatTime(time);
    return QStringLiteral("%1:%2:%3")
        .arg(action.m_hour, 2, 10, QLatin1Char('0'))
        .arg(action.m_minute, 2, 10, QLatin1Char('0'))
        .arg(action.m_second, 2, 10, QLatin1Char('0'));
}

QString StartText::Fate(const Action& action)
{
    const bool isFoundLate = StartTime::IsFoundAtMidnight(action);
    switch (StartTime::FateOf(action))
    {
    case StartTime::Fate::COMES: break;
    case StartTime::Fate::BY_CHANCE:
        return QStringLiteral("starts by chance, %1%2")
            .arg(Phases::Text(StartTime::Phases_ms(action)),
                 isFoundLate ? QStringLiteral("; the first time after a load it always starts") : QString());
    case StartTime::Fate::EVENING_BEFORE:
        return QStringLiteral("is asked for on the evening before%1")
            .arg(isFoundLate ? QStringLiteral(", and at midnight once after a load") : QString());
    case StartTime::Fate::NEVER:
        if (isFoundLate)
            return QStringLiteral("starts at midnight, once after a load, and then never again");
        return StartTime::IsForcedByEveryLoad(action)
                   ? QStringLiteral("starts only after a load: at once on one of its days, or else at the next "
                                    "midnight that begins one")
                   : QStringLiteral("never starts");
    }
    return {};
}
