#include "PeerAnswers.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/Photo.h"

#include <PhotoManagerProxy.h>

using namespace Qt::StringLiterals;

namespace
{

const QString STOP = u"photo.StopPhotoStream -"_s;

void TakePhoto(int status = 0)
{
    Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(status, u"/photo.jpg"_s);
}

const LogLine TAKEN("9 [tasks/Photo.cpp] >>> Photo taken");

LogLine Total(int count)
{
    return {"9 [tasks/Photo.cpp] >>> Total photo: " + QByteArray::number(count)};
}

LogLine Completed(int interval_s, int number)
{
    return {"4 [tasks/Photo.cpp] TASK COMPLETED | Photo: interval=" + QByteArray::number(interval_s) +
            " s, num=" + QByteArray::number(number) + ", "};
}

} // namespace

// What the photos that are taken do to the tasks; every task sees every photo.
class PhotoSeriesTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ASeriesEndsWithItsNumber();
    void ANegativeNumberNeverEnds();
    void AnIdleTaskStaysIdle();
    void ASinglePhotoEndsWithAnyPhoto();
    void AStopIsJudgedByItsAnswer_data() { PeerAnswers::AddRows(); }
    void AStopIsJudgedByItsAnswer();
    void AStopThatFailedIsAskedForAgain_data() { PeerAnswers::AddRows(); }
    void AStopThatFailedIsAskedForAgain();
    void EveryTaskSeesEveryPhoto();
    void ARunBeginsANewSeries();
    void OtherSignalsAreNoPhotos();
    void ATaskThatIsGoneSeesNothing();
};

void PhotoSeriesTest::ASeriesEndsWithItsNumber()
{
    // One of 0 photos ends with the first.
    for (const auto& [number, photos] : {std::pair(3, 3), {2, 2}, {100, 100}, {0, 1}})
    {
        Photo task(u"10,%1"_s.arg(number));
        for (int day = 0; day < 2; ++day)
        {
            QVERIFY(task.Run());
            Bus().Clear();
            LogRecorder::Clear();
            for (int count = 1; count < photos; ++count)
            {
                TakePhoto();
                EXPECT_LOG(9, {TAKEN, Total(count)});
                QVERIFY(task.IsRunning());
            }
            EXPECT_REQUESTS(Bus(), {});
            TakePhoto();
            EXPECT_LOG(9, {TAKEN, Total(photos), Completed(10, number)});
            QCOMPARE(Bus().Requests().value(0).timeout_ms, Request::Find("StopPhotoStream", "10,3").Row().timeout_ms);
            EXPECT_REQUESTS(Bus(), {STOP});
            QVERIFY(!task.IsRunning());
            TakePhoto();
            EXPECT_LOG(9, {TAKEN});
            EXPECT_REQUESTS(Bus(), {});
        }
    }
}

void PhotoSeriesTest::ANegativeNumberNeverEnds()
{
    for (const QString& number : {u"-1"_s, u"-2147483648"_s})
    {
        Photo task(u"10,"_s + number);
        QVERIFY(task.Run());
        Bus().Clear();
        for (int count = 1; count <= 1000; ++count)
        {
            LogRecorder::Clear();
            TakePhoto();
        }
        EXPECT_LOG(9, {TAKEN, Total(1000)});
        EXPECT_REQUESTS(Bus(), {});
        QVERIFY(task.IsRunning());
    }
}

void PhotoSeriesTest::AnIdleTaskStaysIdle()
{
    for (const QString& parameter : {u""_s, u"10,3"_s, u"10,0"_s})
    {
        const Photo task(parameter);
        LogRecorder::Clear();
        for (const int status : {0, 5})
        {
            TakePhoto(status);
            EXPECT_LOG(9, {TAKEN});
            QVERIFY(!task.IsRunning());
        }
        EXPECT_REQUESTS(Bus(), {});
    }
}

void PhotoSeriesTest::ASinglePhotoEndsWithAnyPhoto()
{
    Photo task({});
    // Neither the photo's status nor its path is looked at.
    for (const int status : {0, 5, -1})
    {
        QVERIFY(task.Run());
        QVERIFY(task.IsRunning());
        LogRecorder::Clear();
        TakePhoto(status);
        EXPECT_LOG(9, {TAKEN});
        QVERIFY(!task.IsRunning());
    }
}

void PhotoSeriesTest::AStopIsJudgedByItsAnswer()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("StopPhotoStream", [&answer](const PeerRequest&) { return answer.reply; });
    Photo task(u"10,2"_s);
    QVERIFY(task.Run());
    TakePhoto();
    LogRecorder::Clear();
    TakePhoto();
    const QStringList outcome = Request::Find("StopPhotoStream", "10,2").Records(answer.TakenAs(Judged::WHOLE));
    EXPECT_LOG(9, (LogLines{TAKEN, Total(2)} + ToLines(answer.Filled(outcome))));
    QCOMPARE(task.IsRunning(), !answer.IsAccepted());
}

void PhotoSeriesTest::AStopThatFailedIsAskedForAgain()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("StopPhotoStream", [&answer](const PeerRequest&) { return answer.reply; });
    const Photo idle({});
    Photo series(u"10,2"_s);
    QVERIFY(series.Run());
    Bus().Clear();
    for (int photo = 1; photo <= 4; ++photo)
        TakePhoto();
    // The second photo ends the series, or each one from the second on tries to.
    QCOMPARE(Bus().Requests().size(), answer.IsAccepted() ? 1 : 3);
    Bus().Answer("StopPhotoStream", 0);
    LogRecorder::Clear();
    TakePhoto();
    QVERIFY(!series.IsRunning());
    LogLines log{TAKEN, TAKEN};
    if (!answer.IsAccepted())
        log += {Total(5), Completed(10, 2)};
    EXPECT_LOG(9, (log));
    // It has ended for good.
    Bus().Clear();
    TakePhoto();
    EXPECT_REQUESTS(Bus(), {});
}

void PhotoSeriesTest::EveryTaskSeesEveryPhoto()
{
    Photo first(u"10,3"_s);
    Photo second(u"20,2"_s);
    Photo single({});
    Photo idle(u"30,1"_s);
    QVERIFY(first.Run());
    QVERIFY(second.Run());
    QVERIFY(single.Run());
    Bus().Clear();
    LogRecorder::Clear();
    TakePhoto();
    EXPECT_LOG(9, {TAKEN, Total(1), TAKEN, Total(1), TAKEN, TAKEN});
    QVERIFY(first.IsRunning());
    QVERIFY(second.IsRunning());
    QVERIFY(!single.IsRunning());
    TakePhoto();
    EXPECT_LOG(9, {TAKEN, Total(2), TAKEN, Total(2), Completed(20, 2), TAKEN, TAKEN});
    QVERIFY(first.IsRunning());
    QVERIFY(!second.IsRunning());
    EXPECT_REQUESTS(Bus(), {STOP});
    TakePhoto();
    EXPECT_LOG(9, {TAKEN, Total(3), Completed(10, 3), TAKEN, TAKEN, TAKEN});
    QVERIFY(!first.IsRunning());
    EXPECT_REQUESTS(Bus(), {STOP});
}

void PhotoSeriesTest::ARunBeginsANewSeries()
{
    Photo task(u"10,3"_s);
    QVERIFY(task.Run());
    TakePhoto();
    TakePhoto();
    // The count starts anew,
    QVERIFY(task.Run());
    LogRecorder::Clear();
    TakePhoto();
    EXPECT_LOG(9, {TAKEN, Total(1)});
    // and a refusal leaves no series behind.
    Bus().Answer("TakePhotoStream", 5);
    QVERIFY(!task.Run());
    QVERIFY(task.IsRunning());
    LogRecorder::Clear();
    TakePhoto();
    EXPECT_LOG(9, {TAKEN});
    QVERIFY(!task.IsRunning());
}

void PhotoSeriesTest::OtherSignalsAreNoPhotos()
{
    Photo task({});
    QVERIFY(task.Run());
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_photoManProxy->CameraEnabled(true);
    Q_EMIT Scheduler::m_photoManProxy->PhotoStreamStopped(3);
    EXPECT_LOG(9, {});
    QVERIFY(task.IsRunning());
}

void PhotoSeriesTest::ATaskThatIsGoneSeesNothing()
{
    {
        Photo task(u"10,1000"_s);
        QVERIFY(task.Run());
        Bus().Clear();
        LogRecorder::Clear();
    }
    TakePhoto();
    EXPECT_LOG(9, {});
    // A series of a task that is gone goes on.
    EXPECT_REQUESTS(Bus(), {});
}

OZNA_CASE(PhotoSeries, PhotoSeriesTest)
#include "tst_PhotoSeries.moc"
