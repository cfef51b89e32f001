#include "PeerAnswers.h"
#include "Rows.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/Photo.h"

#include <PhotoManagerProxy.h>

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

const QString STOP = u"photo.StopPhotoStream -"_s;

void TakePhoto(int status = 0)
{
    Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(status, u"/photo.jpg"_s);
}

LogLine Taken()
{
    return {"9 [tasks/Photo.cpp] >>> Photo taken"};
}

LogLine Total(int count)
{
    return {"9 [tasks/Photo.cpp] >>> Total photo: " + QByteArray::number(count)};
}

// Runs a series of two photos up to the fifth, with a peer that refuses each stop after that time. For half a second
// photos may ask one after the other.
void HoldUp(Photo& task, PeerRecorder& bus, int refusal_ms, int stops)
{
    bus.Answer("StopPhotoStream", [refusal_ms](const PeerRequest&) {
        for (const QDeadlineTimer end(refusal_ms); !end.hasExpired();)
            ;
        return PeerReply(4);
    });
    QVERIFY(task.Run());
    bus.Clear();
    for (int photo = 1; photo <= 5; ++photo)
        TakePhoto();
    EXPECT_REQUESTS(bus, (stops, STOP));
    EXPECT_LOG(2, (stops, LogLine("1 [tasks/Photo.cpp] StopPhotoStream error: 4\n")));
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
    void ASeriesEndsWithItsNumber_data();
    void ASeriesEndsWithItsNumber();
    void ANegativeNumberNeverEnds();
    void AnIdleTaskStaysIdle_data();
    void AnIdleTaskStaysIdle();
    void ASinglePhotoEndsWithAnyPhoto();
    void AStopIsJudgedByItsAnswer_data() { PeerAnswers::AddRows(); }
    void AStopIsJudgedByItsAnswer();
    void AStopThatFailedIsAskedForAgain_data() { PeerAnswers::AddRows(); }
    void AStopThatFailedIsAskedForAgain();
    void EveryTaskSeesEveryPhoto();
    void ARunBeginsANewSeries();
    void PhotosBehindASlowStopAskOnceForAllOfThem_data();
    void PhotosBehindASlowStopAskOnceForAllOfThem();
    void PhotosAskAtOnceAgainWhenTheQueueIsDone();
    void PhotosBehindASlowStopAskNothingAfterTheSeries();
    void OtherSignalsAreNoPhotos();
    void ATaskThatIsGoneSeesNothing();
};

void PhotoSeriesTest::ASeriesEndsWithItsNumber_data()
{
    Rows<int, int>::Add({
        {"3 photos", 3, 3},
        {"2 photos", 2, 2},
        {"100 photos", 100, 100},
        {"0 photos end with the first", 0, 1},
    });
}

void PhotoSeriesTest::ASeriesEndsWithItsNumber()
{
    const auto& [number, photos] = Rows<int, int>::Current();
    Photo task(u"10,%1"_s.arg(number));
    for (int day = 0; day < 2; ++day)
    {
        QVERIFY(task.Run());
        Bus().Clear();
        LogRecorder::Clear();
        for (int count = 1; count < photos; ++count)
        {
            TakePhoto();
            EXPECT_LOG(9, {Taken(), Total(count)});
            QVERIFY(task.IsRunning());
        }
        EXPECT_REQUESTS(Bus(), {});
        TakePhoto();
        EXPECT_LOG(9, {Taken(), Total(photos), Completed(10, number)});
        QCOMPARE(Bus().Requests().value(0).timeout_ms, Request::Find("StopPhotoStream", "10,3").Row().timeout_ms);
        EXPECT_REQUESTS(Bus(), {STOP});
        QVERIFY(!task.IsRunning());
        TakePhoto();
        EXPECT_LOG(9, {Taken()});
        EXPECT_REQUESTS(Bus(), {});
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
        EXPECT_LOG(9, {Taken(), Total(1000)});
        EXPECT_REQUESTS(Bus(), {});
        QVERIFY(task.IsRunning());
    }
}

void PhotoSeriesTest::AnIdleTaskStaysIdle_data()
{
    Rows<QString>::Add({
        {"of one photo", u""_s},
        {"of a series", u"10,3"_s},
        {"of none", u"10,0"_s},
    });
}

void PhotoSeriesTest::AnIdleTaskStaysIdle()
{
    const QString& parameter = Rows<QString>::Current();
    const Photo task(parameter);
    LogRecorder::Clear();
    for (const int status : {0, 5})
    {
        TakePhoto(status);
        EXPECT_LOG(9, {Taken()});
        QVERIFY(!task.IsRunning());
    }
    EXPECT_REQUESTS(Bus(), {});
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
        EXPECT_LOG(9, {Taken()});
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
    EXPECT_LOG(9, (LogLines{Taken(), Total(2)} + ToLines(answer.Filled(outcome))));
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
    LogLines log{Taken(), Taken()};
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
    EXPECT_LOG(9, {Taken(), Total(1), Taken(), Total(1), Taken(), Taken()});
    QVERIFY(first.IsRunning());
    QVERIFY(second.IsRunning());
    QVERIFY(!single.IsRunning());
    TakePhoto();
    EXPECT_LOG(9, {Taken(), Total(2), Taken(), Total(2), Completed(20, 2), Taken(), Taken()});
    QVERIFY(first.IsRunning());
    QVERIFY(!second.IsRunning());
    EXPECT_REQUESTS(Bus(), {STOP});
    TakePhoto();
    EXPECT_LOG(9, {Taken(), Total(3), Completed(10, 3), Taken(), Taken(), Taken()});
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
    EXPECT_LOG(9, {Taken(), Total(1)});
    // and a refusal leaves no series behind.
    Bus().Answer("TakePhotoStream", 5);
    QVERIFY(!task.Run());
    QVERIFY(task.IsRunning());
    LogRecorder::Clear();
    TakePhoto();
    EXPECT_LOG(9, {Taken()});
    QVERIFY(!task.IsRunning());
}

void PhotoSeriesTest::PhotosBehindASlowStopAskOnceForAllOfThem_data()
{
    Rows<int, int>::Add({
        {"one stop takes all the time", 510, 1},
        {"two stops do together", 300, 2},
    });
}

void PhotoSeriesTest::PhotosBehindASlowStopAskOnceForAllOfThem()
{
    const auto& [refusal_ms, stops] = Rows<int, int>::Current();
    Photo task(u"10,2"_s);
    HoldUp(task, Bus(), refusal_ms, stops);
    Bus().Answer("StopPhotoStream", 0);
    QTRY_COMPARE(Bus().Requests().size(), 1);
    QVERIFY(!task.IsRunning());
    QCoreApplication::processEvents();
    EXPECT_REQUESTS(Bus(), {STOP});
    QVERIFY(QAbstractEventDispatcher::instance()->registeredTimers(&task).isEmpty());
}

void PhotoSeriesTest::PhotosAskAtOnceAgainWhenTheQueueIsDone()
{
    Photo task(u"10,2"_s);
    HoldUp(task, Bus(), 510, 1);
    Bus().Answer("StopPhotoStream", 4);
    QTRY_COMPARE(Bus().Requests().size(), 1);
    TakePhoto();
    EXPECT_REQUESTS(Bus(), {STOP, STOP});
    const LogLine refused("1 [tasks/Photo.cpp] StopPhotoStream error: 4\n");
    EXPECT_LOG(2, {refused, refused});
}

void PhotoSeriesTest::PhotosBehindASlowStopAskNothingAfterTheSeries()
{
    Photo task(u"10,2"_s);
    HoldUp(task, Bus(), 510, 1);
    // The next series does not come about.
    Bus().Answer("TakePhotoStream", 5);
    QVERIFY(!task.Run());
    Bus().Clear();
    QObject later;
    bool isLater = false;
    QTimer::singleShot(0, &later, [&isLater] { isLater = true; });
    QTRY_VERIFY(isLater);
    EXPECT_REQUESTS(Bus(), {});
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
