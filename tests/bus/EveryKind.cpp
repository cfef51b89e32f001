#include "EveryKind.h"

using namespace Qt::StringLiterals;

namespace
{

const QByteArray LINE_BEGIN = "1111111|08:30:00|*|*|*|||";
constexpr int PLAY_PLAYLIST = 2; // the kind's number
const QString NOT_DELAYED = u"5 [tasks/PlayPlaylist.cpp] PlayPlaylist NOT delayed: will start from track 1"_s;

// The first request of each line, in the order of the schedule. The first two are asked for ahead of their time.
const QList<Request>& Requests()
{
    static const QList<Request> requests{Request::Find("PlayFile", "gong.mp3"),
                                         Request::Find("SetPlayerVolume(playlist)", "day,30,morning"),
                                         Request::Find("SetIntensity", "50"),
                                         Request::Find("SetAmplifiers", "300"),
                                         Request::Find("SetMasterVolume", "-5"),
                                         Request::Find("EnableCamera", "1"),
                                         Request::Find("SetFreq", "600"),
                                         Request::Find("SetEnabled(GPS)", "1"),
                                         Request::Find("EnableLan", "1"),
                                         Request::Find("DisableLan", "0"),
                                         Request::Find("TakePhoto", nullptr),
                                         Request::Find("TakePhotoStream", "10,3"),
                                         Request::Find("StopPlay(file)", nullptr),
                                         Request::Find("StopPlay(playlist)", "day"),
                                         Request::Find("StopPlay(stream)", nullptr),
                                         Request::Find("StopPlay(radiofm)", nullptr),
                                         Request::Find("SetPlayerVolume(stream)", "8554/live,40"),
                                         Request::Find("PlayRadioFm", "98.5"),
                                         Request::Find("StopPlay(radiofm), PlayRadioFm 0", "0"),
                                         Request::Find("PlayAux", "1"),
                                         Request::Find("StopPlay(aux)", "0"),
                                         Request::Find("StopPlay(file)", nullptr)};
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
    return Daemon().Take(2) ==
           QStringList{u"2 [tasks/CpuFreq.cpp] Can't parse Cpu frequency from parameters: '600'. Using 456."_s};
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
