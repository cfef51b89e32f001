#include "PeerAnswers.h"
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
const LogLine REFUSED("1 [tasks/Photo.cpp] StopPhotoStream error: 4\n");

void TakePhoto()
{
    Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(0, u"/photo.jpg"_s);
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
    EXPECT_LOG(2, (stops, REFUSED));
}

} // namespace

// What the answers of the photo manager do to a photo task, late ones too.
class PhotoTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void OnlyAPhotoEndsTheWork_data() { PeerAnswers::AddRows(); }
    void OnlyAPhotoEndsTheWork();
    void ASeriesThatWasRefusedEndsWithAnyPhoto_data() { PeerAnswers::AddRows(); }
    void ASeriesThatWasRefusedEndsWithAnyPhoto();
    void PhotosBehindASlowStopAskOnceForAllOfThem();
    void PhotosAskAtOnceAgainWhenTheQueueIsDone();
    void PhotosBehindASlowStopAskNothingAfterTheSeries();
};

void PhotoTest::OnlyAPhotoEndsTheWork()
{
    QFETCH(PeerAnswer, answer);
    Photo task({});
    Bus().Answer("TakePhoto", [&answer](const PeerRequest&) { return answer.reply; });
    QCOMPARE(task.Run(), answer.IsAccepted());
    QVERIFY(task.IsRunning());
    LogRecorder::Clear();
    TakePhoto();
    QVERIFY(!task.IsRunning());
    QCOMPARE(Bus().Requests().size(), 1);
    EXPECT_LOG(9, {"9 [tasks/Photo.cpp] >>> Photo taken"});
}

void PhotoTest::ASeriesThatWasRefusedEndsWithAnyPhoto()
{
    QFETCH(PeerAnswer, answer);
    Photo task(u"10,3"_s);
    Bus().Answer("TakePhotoStream", [&answer](const PeerRequest&) { return answer.reply; });
    QCOMPARE(task.Run(), answer.IsAccepted());
    QVERIFY(task.IsRunning());
    LogRecorder::Clear();
    // Whoever asked for it.
    TakePhoto();
    QCOMPARE(task.IsRunning(), answer.IsAccepted());
    LogLines log{"9 [tasks/Photo.cpp] >>> Photo taken"};
    if (answer.IsAccepted())
        log.append("9 [tasks/Photo.cpp] >>> Total photo: 1");
    EXPECT_LOG(9, (log));
    QCOMPARE(Bus().Requests().size(), 1);
}

void PhotoTest::PhotosBehindASlowStopAskOnceForAllOfThem()
{
    // One stop takes all the time, or two do together.
    for (const auto& [refusal_ms, stops] : {std::pair(510, 1), {300, 2}})
    {
        Photo task(u"10,2"_s);
        HoldUp(task, Bus(), refusal_ms, stops);
        Bus().Answer("StopPhotoStream", 0);
        QTRY_COMPARE(Bus().Requests().size(), 1);
        QVERIFY(!task.IsRunning());
        QCoreApplication::processEvents();
        EXPECT_REQUESTS(Bus(), {STOP});
        QVERIFY(QAbstractEventDispatcher::instance()->registeredTimers(&task).isEmpty());
    }
}

void PhotoTest::PhotosAskAtOnceAgainWhenTheQueueIsDone()
{
    Photo task(u"10,2"_s);
    HoldUp(task, Bus(), 510, 1);
    Bus().Answer("StopPhotoStream", 4);
    QTRY_COMPARE(Bus().Requests().size(), 1);
    TakePhoto();
    EXPECT_REQUESTS(Bus(), {STOP, STOP});
    EXPECT_LOG(2, {REFUSED, REFUSED});
}

void PhotoTest::PhotosBehindASlowStopAskNothingAfterTheSeries()
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

OZNA_CASE(Photo, PhotoTest)
#include "tst_Photo.moc"
