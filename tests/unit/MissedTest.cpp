#include "MissedTest.h"

#include <UpdateManagerProxy.h>

using namespace Qt::StringLiterals;

void MissedTest::StartBefore(int before_ms, const QByteArrayList& lines)
{
    Time().SetLocal(WEDNESDAY, DUE.addMSecs(-before_ms));
    StartSchedule(lines);
}

void MissedTest::AnswerAfter(int time_ms, const char* method, const PeerReply& reply)
{
    Bus().Answer(method, [this, time_ms, reply](const PeerRequest&) {
        Time().Advance_ms(time_ms);
        return reply;
    });
}

void MissedTest::LoadAnew(Load load)
{
    switch (load)
    {
    case RELOAD: QCOMPARE(Engine().Reload(), 0); break;
    case UPDATE: Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(0, 2); break;
    case ENABLING:
        QCOMPARE(Engine().SetEnabled(false), 0);
        QCOMPARE(Engine().SetEnabled(true), 0);
        break;
    case ANOTHER_FILE: QCOMPARE(Engine().SetScheduleFile(u"schedule.csv"_s), 0); break;
    }
}
