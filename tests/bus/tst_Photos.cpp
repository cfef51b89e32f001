#include "BusMessages.h"
#include "BusTest.h"
#include "Lines.h"
#include "PlayKinds.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// Photos, from the request to the last signal of a series.
class Photos : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void ASeriesEndsWithItsLastPhoto();
    void ASinglePhotoIsAskedForAgainTheNextDay();
    void WhatIsStillUnderWayIsNotAskedForAgain();
    void EveryTaskSeesEveryPhoto();
    void ASeriesWhoseStopFailsAsksAgain();
    void AFloodWhileAStopIsNotAnsweredCostsAFewTimeOuts();
    void AFloodWhileEveryStopIsRefusedStarvesNothing();

private:
    [[nodiscard]] bool StartAt(const QByteArray& schedule, int calls);
    void TakePhotos(int count);
};

namespace
{
constexpr int A_FEW = 4;
constexpr int GREAT_FLOOD = 10000;
constexpr int SANITIZED_FLOOD = 1000; // what is looked at closely takes its time

const Request SERIES = Request::Find("TakePhotoStream", "10,3");
const Request STOP = Request::Find("StopPhotoStream", "10,3");
const QByteArray SERIES_LINE = Due(SERIES);
const QString COMPLETED = SERIES.Ended().first();

// The records of a stop that is refused with that status, and of one that fails on the bus.
QString Refused(int status)
{
    return Shown(Answered(STOP.Records(Outcome::REFUSED), {}, status), 4).first();
}

QString Failed(const char* error)
{
    return Shown(Answered(STOP.Records(Outcome::BUS_ERROR), QString::fromLatin1(error), 0), 4).first();
}

const QString TAKEN = u"9 [tasks/Photo.cpp] >>> Photo taken"_s;

QString Total(int count)
{
    return u"9 [tasks/Photo.cpp] >>> Total photo: %1"_s.arg(count);
}
} // namespace

bool Photos::StartAt(const QByteArray& schedule, int calls)
{
    WriteSchedule(schedule);
    Time().Set(MONDAY, {8, 29, 52});
    return StartDaemon() && RunDue(schedule.count("|08:30:00|")) && Device().WaitForCalls(calls) &&
           Client().Call("IsEnabled") == u"0,true,schedule.csv"_s && Daemon().Take(2).isEmpty();
}

void Photos::TakePhotos(int count)
{
    Device().Emit("photo.PhotoTaken", {0, u"/photos/1.jpg"_s}, count);
}

void Photos::ASeriesEndsWithItsLastPhoto()
{
    QVERIFY(StartAt(SERIES_LINE, 1));
    TakePhotos(3);
    QVERIFY(Daemon().WaitForLog(COMPLETED));
    TakePhotos(1);
    QVERIFY(WaitUntil([this] { return Daemon().Log().count(TAKEN) == 4; }));
    COMPARE_LINES(TakeTaskLines(), {TAKEN, Total(1), TAKEN, Total(2), TAKEN, Total(3), COMPLETED, TAKEN});
    COMPARE_LINES(Device().Calls(), {SERIES.Call(), STOP.Call()});
}

void Photos::ASinglePhotoIsAskedForAgainTheNextDay()
{
    QVERIFY(StartAt("1111111|08:30:00|*|*|*|||RecordPhoto\n", 1));
    TakePhotos(1);
    QVERIFY(Daemon().WaitForLog(TAKEN));
    Time().Set(MONDAY.addDays(1), {8, 29, 52});
    QVERIFY(Device().WaitForCalls(2));
    COMPARE_LINES(Device().Calls(), {u"photo.TakePhoto -"_s, u"photo.TakePhoto -"_s});
}

void Photos::WhatIsStillUnderWayIsNotAskedForAgain()
{
    QVERIFY(StartAt(SERIES_LINE + "1111111|08:30:00|*|*|*|||RecordPhoto\n", 2));
    for (int day = 16; day <= 18; ++day)
    {
        Time().Set(QDate(2024, 1, day), {8, 29, 52});
        static_cast<void>(Daemon().Take());
        QVERIFY(Daemon().WaitForLog(u"9 [Scheduler.cpp] Checking far actions"_s));
        Time().Set(QDate(2024, 1, day), {8, 40});
        QVERIFY(Daemon().WaitForLog(StillRuns("4 (RecordPhoto)", 2)));
        COMPARE_LINES(Daemon().Take(4),
                      (QStringList{StillRuns("4 (RecordPhoto)", 1), StillRuns("4 (RecordPhoto)", 2)}));
    }
    COMPARE_LINES(Device().Calls(), {SERIES.Call(), u"photo.TakePhoto -"_s});
}

void Photos::EveryTaskSeesEveryPhoto()
{
    QVERIFY(StartAt(SERIES_LINE + "1111111|08:30:00|*|*|*|||RecordPhoto|5,2\n"
                                  "1111111|12:00:00|*|*|*|||RecordPhoto\n",
                    2));
    TakePhotos(2);
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/Photo.cpp] TASK COMPLETED | Photo: interval=5 s, num=2, "_s));
    QVERIFY(WaitUntil([this] { return Daemon().Log().count(TAKEN) == 6; }));
    // Each photo reaches the tasks in the order in which they were created.
    COMPARE_LINES(TakeTaskLines(), {TAKEN, Total(1), TAKEN, Total(1), TAKEN, TAKEN, Total(2), TAKEN, Total(2),
                                    u"4 [tasks/Photo.cpp] TASK COMPLETED | Photo: interval=5 s, num=2, "_s, TAKEN});
}

void Photos::ASeriesWhoseStopFailsAsksAgain()
{
    Device().AnswerStatus("photo.StopPhotoStream", 4, 0, 1);
    Device().AnswerError("photo.StopPhotoStream", "busy", 1);
    QVERIFY(StartAt(SERIES_LINE, 1));
    TakePhotos(5);
    QVERIFY(Daemon().WaitForLog(COMPLETED));
    COMPARE_LINES(TakeTaskLines(), {TAKEN, Total(1), TAKEN, Total(2), TAKEN, Total(3), Refused(4), TAKEN, Total(4),
                                    Failed("busy"), TAKEN, Total(5), COMPLETED});
}

void Photos::AFloodWhileAStopIsNotAnsweredCostsAFewTimeOuts()
{
    const QString failed = Failed(NO_REPLY);
    Device().AnswerNever("photo.StopPhotoStream", 0);
    QVERIFY(StartAt(SERIES_LINE, 1));
    const int count = IsSanitized() ? SANITIZED_FLOOD : GREAT_FLOOD;
    TakePhotos(count);
    QVERIFY(Daemon().WaitForLog(Total(count)));
    // Those that had queued up ask once more, in the end; those that were still to come may have asked, too.
    const auto failures = [&] { return Daemon().Log(4).count(failed); };
    QVERIFY(WaitUntil([&] { return failures() >= 2; }));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    QVERIFY2(failures() <= A_FEW, qPrintable(QString::number(failures())));
    QVERIFY(Device().Calls().size() <= 2 + failures());
    // The series has not ended: a photo that comes later asks again.
    Device().ClearAnswers();
    TakePhotos(1);
    QVERIFY(Daemon().WaitForLog(COMPLETED));
    QCOMPARE(StopDaemon(), 0);
}

void Photos::AFloodWhileEveryStopIsRefusedStarvesNothing()
{
    Device().AnswerStatus("photo.StopPhotoStream", 4);
    QVERIFY(StartAt(SERIES_LINE + "1111111|08:30:04|*|*|*|||19|1,1\n", 1));
    const int count = IsSanitized() ? SANITIZED_FLOOD : GREAT_FLOOD;
    const QDBusPendingCall flood = Device().EmitMeanwhile("photo.PhotoTaken", {0, u"/photos/1.jpg"_s}, count);
    QVERIFY(Daemon().WaitForLog(Refused(4)));
    Time().Set(MONDAY, {8, 30, 4});
    // In time, or never: an action may be late for two seconds.
    QVERIFY(Daemon().WaitForLog(u"4 [Scheduler.cpp] >>> Requesting PDD Action: action=STREAM_MIC, enable=1"_s));
    QVERIFY(WaitUntil([&] { return flood.isFinished(); }));
    QVERIFY(Daemon().WaitForLog(Total(count)));
    Device().ClearAnswers();
    TakePhotos(1);
    QVERIFY(Daemon().WaitForLog(COMPLETED));
    QStringList failures = Daemon().Take(2);
    failures.removeAll(Refused(4));
    COMPARE_LINES(failures, QStringList());
    QCOMPARE(StopDaemon(), 0);
}

OZNA_CASE(Photos, Photos)
#include "tst_Photos.moc"
