#include "PassingTest.h"

#include "Clock.h"

#include <SoundManagerProxy.h>

using namespace Qt::StringLiterals;

void PassingTest::WritePlaylist()
{
    Data().WritePlaylist("first.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", u"day"_s);
}

void PassingTest::Pass(int seconds, int firstFar_ms)
{
    const auto note = [this] {
        for (const PeerRequest& request : Bus().Requests())
            m_requests.append(Clock::TimeOfDay().toString(u"HH:mm:ss "_s) + request.Shown().section(u'.', 1));
        Bus().Clear();
    };
    note(); // what a reload has asked for
    PassTime(seconds * 1000, firstFar_ms, note);
    QCoreApplication::sendPostedEvents();
}

void PassingTest::EndMessage()
{
    Q_EMIT Scheduler::m_soundManProxy->PlayFileCompleted({});
}

void PassingTest::EndPlaylist()
{
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted({});
}

void PassingTest::StartSchedule(const QByteArrayList& lines)
{
    QByteArrayList schedule;
    for (const QByteArray& line : lines)
    {
        const QByteArrayList parts = line.split(' ');
        const QByteArray days = parts.size() > 2 ? parts[0] : QByteArray("1111111");
        schedule.append(days + '|' + parts[parts.size() - 2] + "|*|*|*|||" + parts.last());
    }
    m_requests.clear();
    StartWith(schedule);
    Bus().Clear();
}
