#include "PassingTest.h"

#include "Clock.h"

#include <SoundManagerProxy.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int EARLY_INTERVAL_MS = 200;
constexpr int FAR_INTERVAL_MS = 3000;

} // namespace

void PassingTest::WritePlaylist()
{
    Data().WritePlaylist("first.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", u"day"_s);
}

void PassingTest::Pass(int seconds, int firstFar_ms)
{
    for (int passed_ms = EARLY_INTERVAL_MS; passed_ms <= seconds * 1000; passed_ms += EARLY_INTERVAL_MS)
    {
        Time().Advance_ms(EARLY_INTERVAL_MS);
        if (passed_ms % FAR_INTERVAL_MS == firstFar_ms % FAR_INTERVAL_MS)
            CheckFar();
        CheckEarly();
        for (const PeerRequest& request : Bus().Requests())
            m_requests.append(Clock::TimeOfDay().toString(u"HH:mm:ss "_s) + request.Shown().section(u'.', 1));
        Bus().Clear();
    }
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
