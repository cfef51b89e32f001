#include "SchedulerAccess.h"
#include "SchedulerLines.h"
#include "SchedulerTest.h"
#include "Suite.h"
#include "peers/LastCalls.h"
#include "peers/PeerCall.h"
#include "process/StopRequest.h"

#include <GpsManagerProxy.h>
#include <NetworkManagerProxy.h>
#include <UpdateManagerProxy.h>

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace SchedulerLines;

namespace
{

// A request to end stands for good; a test takes it back.
void Withdraw();

template <std::atomic<bool>* IS_MADE> struct Window
{
    friend void Withdraw() { *IS_MADE = false; }
};

template struct Window<&StopRequest::m_isMade>;

} // namespace

// What is left to do, and what is not, when the process is to end.
class StopRequestTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void NothingIsLoadedAnyMore_data();
    void NothingIsLoadedAnyMore();
    void TheRestOfAPassIsLeft();
    void ACallIsNotSent();
    void ACallThatWasNotSentIsNotJudged();
    void DeletionStillAsks();
    void APeerIsSilentOnlyFromTheRequestOn();

private:
    void End() override;
};

void StopRequestTest::End()
{
    Withdraw();
    SchedulerTest::End();
}

void StopRequestTest::NothingIsLoadedAnyMore_data()
{
    QTest::addColumn<QString>("by");
    QTest::addColumn<bool>("wasEnabled");
    for (const bool wasEnabled : {true, false})
    {
        for (const char* by : {"Reload", "SetScheduleFile", "SetEnabled", "FilesUpdated"})
            QTest::addRow("%s while %s", by, wasEnabled ? "enabled" : "disabled")
                << QString::fromLatin1(by) << wasEnabled;
    }
}

void StopRequestTest::NothingIsLoadedAnyMore()
{
    QFETCH(QString, by);
    QFETCH(bool, wasEnabled);
    StartWith({"1111111|12:00:05|*|*|*|||Volume|10"});
    Engine().SetEnabled(wasEnabled);
    LogRecorder::Clear();
    const QSignalSpy told(&Engine(), &Scheduler::SchedulingEnabled);
    StopRequest::Make();

    int status = 0;
    if (by == "Reload"_L1)
        status = Engine().Reload();
    else if (by == "SetScheduleFile"_L1)
        status = Engine().SetScheduleFile(u"other.csv"_s);
    else if (by == "SetEnabled"_L1)
        status = Engine().SetEnabled(true);
    else
        Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(0, 2);

    QCOMPARE(status, 0);
    bool enabled = false;
    QString name;
    QCOMPARE(Engine().IsEnabled(enabled, name), 0);
    QCOMPARE(enabled, wasEnabled);
    QCOMPARE(name, by == "SetScheduleFile"_L1 ? u"other.csv"_s : u"schedule.csv"_s);
    QCOMPARE(Engine().FarActions().Size(), wasEnabled ? 1 : 0);
    QCOMPARE(SchedulerAccess::FarTimer(Engine()).isActive(), wasEnabled);
    // What is told to the bus is the state that there is.
    QCOMPARE(told.size(), by == "SetEnabled"_L1 ? 1 : 0);
    if (!told.isEmpty())
        QCOMPARE(told[0], (QVariantList{wasEnabled, u"schedule.csv"_s}));
    LogRecorder::Clear();
}

void StopRequestTest::TheRestOfAPassIsLeft()
{
    StartWith({"1111111|12:00:05|*|*|*|||Volume|1", "1111111|12:00:05|*|*|*|||Volume|2",
               "1111111|12:00:05|*|*|*|||Volume|3"});
    CheckFar();
    Time().Advance_s(5);
    Bus().Answer("SetMasterVolume", [](const PeerRequest& request) {
        if (request.arguments.value(0).toDouble() == 2)
            StopRequest::Make();
        return PeerReply(0);
    });
    CheckEarly();
    EXPECT_REQUESTS(Bus(), {u"sound.SetMasterVolume d 1"_s, u"sound.SetMasterVolume d 2"_s});
    CheckEarly();
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(EarlyList(), QStringList{u"Volume 12:00:05"_s});
    LogRecorder::Clear();
}

void StopRequestTest::ACallIsNotSent()
{
    Create();
    StopRequest::Make();
    const PeerReply reply = PeerCall::Send(nullptr, u"Anything"_s);
    QVERIFY(reply.IsBusError());
    QVERIFY(!reply.IsAccepted());
    QCOMPARE(reply.ErrorMessage(), u"The scheduler is stopping"_s);
    EXPECT_REQUESTS(Bus(), {});
}

void StopRequestTest::ACallThatWasNotSentIsNotJudged()
{
    const PeerReply reply = PeerReply::NotSent(u"reason"_s);
    const auto never = [](auto...) { QFAIL("judged"); };
    QVERIFY(!reply.ReportStatus(never, never));
    QString shown;
    QVERIFY(!reply.Report([&](const char* error) { shown = QString::fromUtf8(error); }, never, never));
    QCOMPARE(shown, u"reason"_s);
}

void StopRequestTest::DeletionStillAsks()
{
    StartWith({"1111111|12:00:05|*|*|*|||PlayMessage|gong.mp3"});
    CheckFar();
    CheckEarly();
    Bus().Clear();
    StopRequest::Make();
    Engine().SetEnabled(false);
    EXPECT_REQUESTS(Bus(), {u"sound.StopPlay ss file "_s});
    QVERIFY(PeerCall::Send(nullptr, u"Anything"_s).IsBusError());
    LogRecorder::Clear();
}

void StopRequestTest::APeerIsSilentOnlyFromTheRequestOn()
{
    LastCalls::NoteTimeOut(Scheduler::m_gpsManProxy);
    QVERIFY(!LastCalls::IsSilent(Scheduler::m_gpsManProxy));
    StopRequest::Make();
    LastCalls::NoteTimeOut(Scheduler::m_gpsManProxy);
    QVERIFY(LastCalls::IsSilent(Scheduler::m_gpsManProxy));
    QVERIFY(!LastCalls::IsSilent(Scheduler::m_networkManProxy));
}

OZNA_CASE(StopRequest, StopRequestTest)
#include "tst_StopRequest.moc"
