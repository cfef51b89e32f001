#include "MessageTest.h"

using namespace Qt::StringLiterals;

QByteArray MessageTest::MessageLine(const char* parameters)
{
    return QByteArray("1111111|08:30:00|*|*|*|||PlayMessage|") + parameters + '\n';
}

QString MessageTest::Requested(int volume)
{
    return u"9 [tasks/PlayMessage.cpp] TASK START@TIME REQUESTED | PlayMessage: gong.mp3|08:30:00|%1"_s.arg(volume);
}

bool MessageTest::StartAndWaitForRequest()
{
    WriteSchedule(MessageLine("gong.mp3"));
    if (!StartDaemon())
        return false;
    static_cast<void>(Daemon().Take());
    // The daemon answers a call only when the request before it has been answered.
    return Device().WaitForCalls(1) && Client().Call("IsEnabled") == u"0,true,schedule.csv"_s;
}
