#include "Expectation.h"

#include "Lines.h"

namespace
{

constexpr int NEXT_AFTER_MS = 5000;         // how long after the task
constexpr int STILL_IN_TIME_MS = 2000;      // an action may be that late
constexpr qsizetype PHOTOS_OF_A_SERIES = 2; // of each series in the table
const QString NEXT_TYPE = QStringLiteral("19 (RequestPddAction)");

QString EarlyLine(const QString& type)
{
    return QStringLiteral("4 [Scheduler.cpp] EARLY action found: ") + type;
}

QString ReadyLine(const QString& type)
{
    return QStringLiteral("4 [Scheduler.cpp] READY action found: ") + type;
}

const char* LinesOf(const Request& request, Outcome outcome)
{
    switch (outcome)
    {
    case Outcome::BUS_ERROR: return request.onError;
    case Outcome::REFUSED: return request.onRefused;
    case Outcome::ACCEPTED: break;
    }
    return request.onAccepted;
}

bool IsMissed(const Request& request, const Fault* fault)
{
    return fault && fault->kind == FaultKind::LATE && request.timeout_ms > NEXT_AFTER_MS + STILL_IN_TIME_MS;
}

bool IsPhotoWork(const Request& request)
{
    return request.wait == Wait::PHOTO || request.wait == Wait::SERIES;
}

// Whether what is under way ends because its peer leaves the bus.
bool IsEndedWithPeer(const Request& request, FaultKind kind)
{
    const bool isStart = request.trigger == Trigger::START && request.wait != Wait::NOTHING;
    switch (kind)
    {
    case FaultKind::DIES:
    case FaultKind::RESTARTS: return isStart;
    // The successor answers a second request, and what that starts is the successor's.
    case FaultKind::TAKEN_OVER: return isStart && request.follow == Follow::NEVER;
    // Photo work is under way also when its request has failed; a series that could not be stopped goes on.
    case FaultKind::EXIT:
    case FaultKind::EMPTY_STRUCTURE: return IsPhotoWork(request) || request.trigger == Trigger::PHOTO;
    case FaultKind::ABSENT: return request.trigger != Trigger::START;
    default: return false;
    }
}

} // namespace

const QString Expectation::NEXT_DONE =
    QStringLiteral("4 [Scheduler.cpp] >>> Requesting PDD Action: action=STREAM_MIC, enable=1");

QStringList TableLines(const char* text, const char* message, const char* peer)
{
    const QString cause = QString::fromLatin1(message).replace(QStringLiteral("%1"), QLatin1String(peer));
    return QString::fromLatin1(text).replace(QStringLiteral("%1"), cause).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

Expectation::Expectation(const Request& request, const Fault* fault, bool isNextWatched)
    : photos(request.trigger == Trigger::PHOTO ? PHOTOS_OF_A_SERIES : 0)
    , isNextMissed(IsMissed(request, fault))
    , signalsToEnd(0)
{
    const Outcome outcome = fault ? fault->outcome : Outcome::ACCEPTED;
    const PeerAfter after = fault ? fault->after : PeerAfter::HERE;
    const bool isAccepted = outcome == Outcome::ACCEPTED;
    const bool isGone = after == PeerAfter::GONE;

    schedulerLines.append(EarlyLine(QString::fromLatin1(request.type)));
    if (!isNextWatched)
        schedulerLines.append(EarlyLine(NEXT_TYPE));
    schedulerLines.append(ReadyLine(QString::fromLatin1(request.type)));
    if (!isNextMissed)
        schedulerLines += {ReadyLine(NEXT_TYPE), NEXT_DONE};
    if (request.trigger == Trigger::DELETION)
        schedulerLines += Lines::RESTARTING + Lines::STOPPED;

    taskLines =
        TableLines(request.before) + TableLines(LinesOf(request, outcome), fault ? fault->error : "", request.peer);
    calls = TableLines(request.callsBefore);
    if (!fault || fault->kind != FaultKind::ABSENT)
        calls += TableLines(request.call);
    if (request.follow == Follow::ALWAYS || (request.follow == Follow::ACCEPTED && isAccepted))
    {
        taskLines += isGone ? TableLines(request.onFollowGone, NO_OWNER, request.peer) : TableLines(request.onFollow);
        if (!isGone)
            (after == PeerAfter::HERE ? calls : successorCalls) += TableLines(request.followCall);
    }

    if (fault && IsEndedWithPeer(request, fault->kind))
    {
        // At a deletion it has ended before it is to be stopped: the first record of the stop is the last of those.
        const qsizetype place =
            request.trigger == Trigger::DELETION ? TableLines(request.before).size() - 1 : taskLines.size();
        taskLines.insert(place, QString::fromLatin1(request.endedWithPeer));
    }
    else if (fault && fault->kind == FaultKind::FLOOD)
        AddFlood(request);
    else if (fault && fault->kind == FaultKind::ENDS &&
             (request.wait != Wait::PLAYBACK || request.follow == Follow::NEVER))
        AddSignalBehind(request);
    else if (!fault || fault->kind != FaultKind::ABSENT || !IsPhotoWork(request))
        AddEnd(request, isGone, isAccepted);
}

// The first signals are what the task waits for.
void Expectation::AddFlood(const Request& request)
{
    if (request.wait != Wait::NOTHING)
        taskLines += TableLines(request.ended);
    if (request.wait == Wait::SERIES)
        calls.append(QStringLiteral("photo.StopPhotoStream -"));
    if (request.wait == Wait::PHOTO || request.wait == Wait::SERIES || request.trigger == Trigger::PHOTO)
        photos = FLOOD_SIZE;
}

void Expectation::AddSignalBehind(const Request& request)
{
    switch (request.wait)
    {
    case Wait::PLAYBACK: taskLines += TableLines(request.ended); break;
    case Wait::PHOTO: photos = 1; break;
    case Wait::SERIES:
        photos = 1;
        signalsToEnd = PHOTOS_OF_A_SERIES - 1;
        endLines = TableLines(request.ended);
        break;
    case Wait::NOTHING: photos += request.trigger == Trigger::PHOTO ? 1 : 0; break;
    }
}

void Expectation::AddEnd(const Request& request, bool isGone, bool isAccepted)
{
    const bool isPlaying = request.follow == Follow::ALWAYS ? !isGone : isAccepted;
    switch (request.wait)
    {
    case Wait::PLAYBACK: signalsToEnd = isPlaying ? 1 : 0; break;
    // A request that failed is work in progress all the same, until a photo comes.
    case Wait::PHOTO: signalsToEnd = 1; break;
    case Wait::SERIES: signalsToEnd = isAccepted ? PHOTOS_OF_A_SERIES : 1; break;
    // A series that could not be stopped goes on, and the next photo asks again.
    case Wait::NOTHING: signalsToEnd = request.trigger == Trigger::PHOTO && !isAccepted ? 1 : 0; break;
    }
    const bool isLogged = request.wait == Wait::SERIES ? isAccepted : signalsToEnd > 0;
    if (isLogged)
        endLines = TableLines(request.ended);
}
