#include "PeerAnswers.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/Photo.h"

#include <PhotoManagerProxy.h>

using namespace Qt::StringLiterals;

// What a photo task is made of and what it asks for.
class PhotoTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void OnlyAPhotoEndsTheWork_data() { PeerAnswers::AddRows(); }
    void OnlyAPhotoEndsTheWork();
    void ASeriesThatWasRefusedEndsWithAnyPhoto_data() { PeerAnswers::AddRows(); }
    void ASeriesThatWasRefusedEndsWithAnyPhoto();
};

void PhotoTest::OnlyAPhotoEndsTheWork()
{
    QFETCH(PeerAnswer, answer);
    Photo task({});
    Bus().Answer("TakePhoto", [&answer](const PeerRequest&) { return answer.reply; });
    QCOMPARE(task.Run(), answer.IsAccepted());
    QVERIFY(task.IsRunning());
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(0, u"/photo.jpg"_s);
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
    Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(0, u"/photo.jpg"_s);
    QCOMPARE(task.IsRunning(), answer.IsAccepted());
    LogLines log{"9 [tasks/Photo.cpp] >>> Photo taken"};
    if (answer.IsAccepted())
        log.append("9 [tasks/Photo.cpp] >>> Total photo: 1");
    EXPECT_LOG(9, (log));
    QCOMPARE(Bus().Requests().size(), 1);
}

OZNA_CASE(Photo, PhotoTest)
#include "tst_Photo.moc"
