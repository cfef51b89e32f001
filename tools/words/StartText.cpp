#include "StartText.h"

#include "engine/Phases.h"
#include "engine/StartTime.h"
#include "peers/SoundManager.h"

namespace
{

const QString IF_TRACKS = QStringLiteral(", if the playlist has more than one track");

// text of what comes when the action is found at midnight.
QString IfFound(StartTime::Answer found, const QString& text)
{
    return found == StartTime::Answer::NO ? QString() : found == StartTime::Answer::YES ? text : text + IF_TRACKS;
}

} // namespace

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

QString StartText::FoundAtMidnight(const Action& action, bool areTracksKnown)
{
    return IfFound(StartTime::FoundAtMidnight(action, areTracksKnown),
                   QStringLiteral("it may start at midnight, once after a load"));
}

QString StartText::Fate(const Action& action, bool areTracksKnown)
{
    const StartTime::Answer found = StartTime::FoundAtMidnight(action, areTracksKnown);
    switch (StartTime::FateOf(action))
    {
    case StartTime::Fate::COMES: break;
    case StartTime::Fate::BY_CHANCE:
        return QStringLiteral("starts by chance, %1%2")
            .arg(Phases::Text(StartTime::Phases_ms(action)),
                 IfFound(found, QStringLiteral("; the first time after a load it always starts")));
    case StartTime::Fate::EVENING_BEFORE:
        return QStringLiteral("is asked for on the evening before%1")
            .arg(IfFound(found, QStringLiteral(", and at midnight once after a load")));
    case StartTime::Fate::NEVER:
        if (found == StartTime::Answer::YES)
            return QStringLiteral("starts at midnight, once after a load, and then never again");
        if (found == StartTime::Answer::PERHAPS)
            return QStringLiteral("may start at midnight once after a load%1, and otherwise never starts")
                .arg(IF_TRACKS);
        return StartTime::IsForcedByEveryLoad(action)
                   ? QStringLiteral("starts only after a load: at once on one of its days, or else at the next "
                                    "midnight that begins one")
                   : QStringLiteral("never starts");
    }
    return {};
}
