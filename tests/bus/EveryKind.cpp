#include "EveryKind.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray LINE_BEGIN = "1111111|08:30:00|*|*|*|||";
constexpr int PLAY_PLAYLIST = 2; // the kind's number
const QString NOT_DELAYED = u"5 [tasks/PlayPlaylist.cpp] PlayPlaylist NOT delayed: will start from track 1"_s;

// What is asked for ahead of its time comes first: one of each, as the end of one would be the other's too.
QList<Request> Ahead()
{
    return {Request::Find("PlayFile", "gong.mp3"), Request::Find("SetPlayerVolume(playlist)", "day,30,morning")};
}

bool IsAhead(int kind)
{
    const QList<Request> ahead = Ahead();
    return std::ranges::any_of(ahead, [kind](const Request& request) { return request.Row().kind == kind; });
}

// The request with which each line begins, in the order of the schedule: all that the start of a task brings. The last
// line stops a message again.
const QList<Request>& Requests()
{
    static const QList<Request> requests = [] {
        QList<Request> all = Ahead();
        for (const Request& request : Request::First())
        {
            if (request.Row().trigger == Trigger::START && request.Row().first == nullptr &&
                !IsAhead(request.Row().kind))
                all.append(request);
        }
        // Numbers that do not go out as they are written, or as most are.
        all += {Request::Find("SetAmplifiers", "300"), Request::Find("SetMasterVolume", "-5")};
        all.append(Request::Find("StopPlay(file)", nullptr));
        return all;
    }();
    return requests;
}

QList<Request> Sent(const Request& request, Outcome outcome)
{
    return request.IsFollowed(outcome) ? QList<Request>{request, request.Followed()} : QList<Request>{request};
}

} // namespace

bool EveryKind::StartSchedule()
{
    QByteArray schedule = LINE_BEGIN + "19|1,1\n";
    for (const Request& request : Requests())
        schedule += LINE_BEGIN + request.Schedule().toLatin1() + '\n';
    WriteSchedule(schedule);
    WritePlaylist("first.mp3;60\n", u"day"_s);
    Time().Set(MONDAY, {8, 29, 54});
    if (!StartDaemon())
        return false;
    // The one kind that warns of every parameter.
    return Daemon().Take(2) ==
           QStringList{u"2 [tasks/CpuFreq.cpp] Can't parse Cpu frequency from parameters: '456'. Using 456."_s};
}

bool EveryKind::WaitForTheLast()
{
    const QString started = u"9 [Action.cpp] Task StopMessage is starting !"_s;
    // The bus hears an answer when the pass that starts them all is over.
    return WaitUntil([&] { return Daemon().Log().count(started) == 2; }, 60000) &&
           Client().Call("IsEnabled") == u"0,true,schedule.csv"_s;
}

QStringList EveryKind::Calls(Outcome outcome)
{
    QStringList calls;
    for (const Request& request : Requests())
    {
        for (const Request& sent : Sent(request, outcome))
            calls.append(sent.Call());
    }
    return calls;
}

QStringList EveryKind::TaskLines(Outcome outcome, const char* error)
{
    QStringList lines;
    for (const Request& request : Requests())
    {
        if (request.Row().kind == PLAY_PLAYLIST)
            lines.append(NOT_DELAYED);
        for (const Request& sent : Sent(request, outcome))
        {
            const QString message = QString::fromLatin1(error).replace(u"%1"_s, sent.Peer());
            lines += Shown(Answered(sent.Records(outcome), message, REFUSAL), LEVEL_ALL);
        }
    }
    return lines;
}

QList<QByteArray> EveryKind::Methods()
{
    QList<QByteArray> methods;
    for (const QString& call : Calls(Outcome::ACCEPTED))
    {
        const QByteArray method = call.section(u' ', 0, 0).toLatin1();
        if (!methods.contains(method))
            methods.append(method);
    }
    return methods;
}
