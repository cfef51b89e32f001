#include "Expectation.h"

#include "Lines.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr int NEXT_AFTER_MS = 5000;         // how long after the task
constexpr int STILL_IN_TIME_MS = 2000;      // an action may be that late
constexpr qsizetype PHOTOS_OF_A_SERIES = 2; // of each series in the table
const QString NEXT_TYPE = u"19 (RequestPddAction)"_s;

QString EarlyLine(const QString& type)
{
    return u"4 [Scheduler.cpp] EARLY action found: "_s + type;
}

QString ReadyLine(const QString& type)
{
    return u"4 [Scheduler.cpp] READY action found: "_s + type;
}

// The records of what was answered, as the daemon shows them.
QStringList ShownAnswer(const QStringList& records, const Request& request, const char* error)
{
    const QString message = QString::fromLatin1(error).replace(u"%1"_s, request.Peer());
    return Shown(Answered(records, message, REFUSAL), SHOWN_LEVEL);
}

bool IsMissed(const RequestRow& request, const Fault* fault)
{
    return fault && fault->kind == FaultKind::LATE && request.timeout_ms > NEXT_AFTER_MS + STILL_IN_TIME_MS;
}

bool IsPhotoWork(const RequestRow& request)
{
    return request.wait == Wait::PHOTO || request.wait == Wait::SERIES;
}

// Whether what is under way ends because its peer leaves the bus.
bool IsEndedWithPeer(const RequestRow& request, FaultKind kind)
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

const QString Expectation::NEXT_DONE = u"4 [Scheduler.cpp] >>> Requesting PDD Action: action=STREAM_MIC, enable=1"_s;

Expectation::Expectation(const Request& request, const Fault* fault, bool isNextWatched)
    : photos(request.Row().trigger == Trigger::PHOTO ? PHOTOS_OF_A_SERIES : 0)
    , isNextMissed(IsMissed(request.Row(), fault))
    , signalsToEnd(0)
{
    const RequestRow& row = request.Row();
    const Outcome outcome = fault ? fault->outcome : Outcome::ACCEPTED;
    const PeerAfter after = fault ? fault->after : PeerAfter::HERE;
    const bool isAccepted = outcome == Outcome::ACCEPTED;
    const bool isGone = after == PeerAfter::GONE;

    schedulerLines.append(EarlyLine(request.Type()));
    if (!isNextWatched)
        schedulerLines.append(EarlyLine(NEXT_TYPE));
    schedulerLines.append(ReadyLine(request.Type()));
    if (!isNextMissed)
        schedulerLines += {ReadyLine(NEXT_TYPE), NEXT_DONE};
    if (row.trigger == Trigger::DELETION)
        schedulerLines += Lines::RESTARTING + Lines::STOPPED;

    const QStringList linesBefore = Shown(request.RecordsBefore(), SHOWN_LEVEL);
    taskLines = linesBefore + ShownAnswer(request.Records(outcome), request, fault ? fault->error : "");
    for (const Request& earlier : request.Before())
        calls.append(earlier.Call());
    if (!fault || fault->kind != FaultKind::ABSENT)
        calls.append(request.Call());
    if (request.IsFollowed(outcome))
    {
        const Request next = request.Followed();
        taskLines += ShownAnswer(next.Records(isGone ? Outcome::BUS_ERROR : Outcome::ACCEPTED), next, NO_OWNER);
        if (!isGone)
            (after == PeerAfter::HERE ? calls : successorCalls).append(next.Call());
    }

    if (fault && IsEndedWithPeer(row, fault->kind))
    {
        // At a deletion it has ended before it is to be stopped.
        if (row.trigger == Trigger::DELETION)
            taskLines = linesBefore + request.EndedWithPeer() + taskLines.mid(linesBefore.size());
        else
            taskLines += request.EndedWithPeer();
    }
    else if (fault && fault->kind == FaultKind::FLOOD)
        AddFlood(request);
    else if (fault && fault->kind == FaultKind::ENDS && (row.wait != Wait::PLAYBACK || row.follow == Follow::NEVER))
        AddSignalBehind(request);
    else if (!fault || fault->kind != FaultKind::ABSENT || !IsPhotoWork(row))
        AddEnd(request, isGone, isAccepted);
}

// The first signals are what the task waits for.
void Expectation::AddFlood(const Request& request)
{
    if (request.Row().wait != Wait::NOTHING)
        taskLines += request.Ended();
    if (request.Row().wait == Wait::SERIES)
        calls.append(u"photo.StopPhotoStream -"_s);
    if (request.Row().wait == Wait::PHOTO || request.Row().wait == Wait::SERIES ||
        request.Row().trigger == Trigger::PHOTO)
        photos = FLOOD_SIZE;
}

void Expectation::AddSignalBehind(const Request& request)
{
    switch (request.Row().wait)
    {
    case Wait::PLAYBACK: taskLines += request.Ended(); break;
    case Wait::PHOTO: photos = 1; break;
    case Wait::SERIES:
        photos = 1;
        signalsToEnd = PHOTOS_OF_A_SERIES - 1;
        endLines = request.Ended();
        break;
    case Wait::NOTHING: photos += request.Row().trigger == Trigger::PHOTO ? 1 : 0; break;
    }
}

void Expectation::AddEnd(const Request& request, bool isGone, bool isAccepted)
{
    const bool isPlaying = request.Row().follow == Follow::ALWAYS ? !isGone : isAccepted;
    switch (request.Row().wait)
    {
    case Wait::PLAYBACK: signalsToEnd = isPlaying ? 1 : 0; break;
    // A request that failed is work in progress all the same, until a photo comes.
    case Wait::PHOTO: signalsToEnd = 1; break;
    case Wait::SERIES: signalsToEnd = isAccepted ? PHOTOS_OF_A_SERIES : 1; break;
    // A series that could not be stopped goes on, and the next photo asks again.
    case Wait::NOTHING: signalsToEnd = request.Row().trigger == Trigger::PHOTO && !isAccepted ? 1 : 0; break;
    }
    const bool isLogged = request.Row().wait == Wait::SERIES ? isAccepted : signalsToEnd > 0;
    if (isLogged)
        endLines = request.Ended();
}
