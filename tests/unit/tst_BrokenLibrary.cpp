#include "BrokenFunctions.h"
#include "Rows.h"
#include "SchedulerTest.h"
#include "Suite.h"
#include "peers/Peers.h"
#include "tasks/PlayMessage.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

class BrokenLibraryTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnExceptionWhileLoadingEndsTheLoad();
    void AReadErrorIsLogged();
    void AnActionThatCannotBeConnectedIsDropped();
    void OnlyActionsWithAnAnnouncementAreConnected();
    void ASchedulerThatCannotBeConnectedIsNone_data();
    void ASchedulerThatCannotBeConnectedIsNone();
    void AMessageWhoseEndCannotBeHeardIsTold();

private:
    void Begin() override;
};

void BrokenLibraryTest::Begin()
{
    BrokenFunctions::Mend();
    Data().WriteSchedule(QByteArray("1111111|08:30:00|*|*|*|||StopMessage\n").repeated(3));
    Create();
}

void BrokenLibraryTest::AnExceptionWhileLoadingEndsTheLoad()
{
    for (const int goodLines : {0, 1, 2})
    {
        Begin();
        BrokenFunctions::goodLines = goodLines;
        Engine().Start();
        LogLines lines{"4 [Scheduler.cpp] Starting schedule...", "4 [Scheduler.cpp] Loading schedule from " +
                                                                     Data().SchedulePath(u"schedule.csv"_s).toUtf8() +
                                                                     "..."};
        for (int i = 0; i < goodLines; ++i)
            lines.append("4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage");
        lines += {"1 [Scheduler.cpp] Unexpected error while loading schedule",
                  "4 [Scheduler.cpp] Finding ready actions...", "4 [Scheduler.cpp] Schedule started"};
        EXPECT_LOG(4, (lines));
        // What was read before stays.
        QCOMPARE(FarList().size(), goodLines);
    }
}

void BrokenLibraryTest::AReadErrorIsLogged()
{
    BrokenFunctions::hasReadError = true;
    Engine().Start();
    EXPECT_LOG(2, {"2 [Scheduler.cpp] Schedule file read error: Input/output error"});
    QCOMPARE(FarList().size(), 3);
}

void BrokenLibraryTest::AnActionThatCannotBeConnectedIsDropped()
{
    for (const int failing : {0, 1, 2})
    {
        Begin();
        Data().WriteSchedule(QByteArray("1111111|08:30:00|*|*|*|||19|1,1\n").repeated(3));
        BrokenFunctions::goodConnections = 2 * failing + 1; // one of its task comes before that of an action
        Engine().Start();
        LogLines lines{"4 [Scheduler.cpp] Starting schedule...", "4 [Scheduler.cpp] Loading schedule from " +
                                                                     Data().SchedulePath(u"schedule.csv"_s).toUtf8() +
                                                                     "..."};
        for (int i = 0; i < 3; ++i)
        {
            lines.append("4 [tasks/RequestPddAction.cpp] TASK CREATED | RequestPddAction(STREAM_MIC, 1)");
            if (i == failing)
                lines.append("2 [Scheduler.cpp] Action creation failed");
        }
        lines += {"4 [Scheduler.cpp] Schedule loaded (2 tasks)", "4 [Scheduler.cpp] Finding ready actions...",
                  "4 [Scheduler.cpp] Schedule started"};
        EXPECT_LOG(4, (lines));
        QCOMPARE(FarList().size(), 2);
    }
}

void BrokenLibraryTest::OnlyActionsWithAnAnnouncementAreConnected()
{
    BrokenFunctions::goodConnections = 0;
    Engine().Start();
    QCOMPARE(FarList().size(), 3);
    QCOMPARE(BrokenFunctions::goodConnections, 0);
    BrokenFunctions::goodConnections = -1;
}

void BrokenLibraryTest::ASchedulerThatCannotBeConnectedIsNone_data()
{
    Rows<int>::Add({
        {"the update manager's signal", 0},
        {"the end of a message", 1},
        {"the end of a playlist", 2},
        {"the end of a stream", 3},
        {"the far timer", 4},
        {"the early timer", 5},
    });
}

void BrokenLibraryTest::ASchedulerThatCannotBeConnectedIsNone()
{
    const int failing = Rows<int>::Current();
    End();
    Peers::DeleteProxies();
    LogRecorder::Clear();
    BrokenFunctions::goodConnections = failing;
    QVERIFY_THROWS_EXCEPTION(std::exception, Scheduler(u"schedule.csv"_s));
    EXPECT_LOG(9, {});
}

void BrokenLibraryTest::AMessageWhoseEndCannotBeHeardIsTold()
{
    PlayMessage message(u"08:30:00"_s, u"gong.mp3"_s, u"-1"_s);
    BrokenFunctions::goodConnections = 0;
    LogRecorder::Clear();
    QVERIFY(message.Run());
    EXPECT_LOG(2, {"2 [tasks/PlayMessage.cpp] Can't wait for the end of PlayMessage"});
}

OZNA_CASE(BrokenLibrary, BrokenLibraryTest)
#include "tst_BrokenLibrary.moc"
