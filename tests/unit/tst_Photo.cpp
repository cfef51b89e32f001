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
    void AParameterIsReadAtCreation_data();
    void AParameterIsReadAtCreation();
    void OnlyAPhotoEndsTheWork_data() { PeerAnswers::AddRows(); }
    void OnlyAPhotoEndsTheWork();
    void ASeriesThatWasRefusedEndsWithAnyPhoto_data() { PeerAnswers::AddRows(); }
    void ASeriesThatWasRefusedEndsWithAnyPhoto();
};

void PhotoTest::AParameterIsReadAtCreation_data()
{
    QTest::addColumn<QString>("parameter");
    QTest::addColumn<LogLines>("log");
    const auto row = [](const QByteArray& parameter, int interval_s, int number, bool badInterval = false,
                        bool badNumber = false) {
        LogLines log;
        if (badInterval)
            log.append("2 [tasks/Photo.cpp] Can't parse Photo interval from parameters: '" + parameter + "'. Using 0.");
        if (badNumber)
            log.append("2 [tasks/Photo.cpp] Can't parse Photo number from parameters: '" + parameter + "'. Using 1.");
        log.append("4 [tasks/Photo.cpp] TASK CREATED | Photo: interval=" + QByteArray::number(interval_s) +
                   " s, numPhoto=" + QByteArray::number(number));
        QTest::addRow("\"%s\"", parameter.constData()) << QString::fromUtf8(parameter) << log;
    };
    QTest::newRow("a null text") << QString()
                                 << LogLines{"4 [tasks/Photo.cpp] TASK CREATED | Photo: interval=0 s, numPhoto=1"};
    row("", 0, 1);
    row("10,3", 10, 3);
    row(" 10 , 3 ", 10, 3);
    row("10,1", 10, 1);
    row("0,0", 0, 0);
    row("10,0", 10, 0);
    row("10,-1", 10, -1);
    row("-10,3", -10, 3);
    row("2147483647,-2147483648", std::numeric_limits<int>::max(), std::numeric_limits<int>::min());
    row("10,3,5", 10, 3);
    row("x,3", 0, 3, true);
    row(",3", 0, 3, true);
    row("1.5,3", 0, 3, true);
    row("2147483648,3", 0, 3, true);
    row("10,x", 10, 1, false, true);
    row("10,,3", 10, 1, false, true);
    row("10,2147483648", 10, 1, false, true);
    // A field that is missing is no number.
    row("10", 10, 1, false, true);
    row("10,", 10, 1, false, true);
    row("x", 0, 1, true, true);
    row("x,y", 0, 1, true, true);
    row(",", 0, 1, true, true);
    row(" ", 0, 1, true, true);
    row("%s,%n", 0, 1, true, true);
    row("10;3", 0, 1, true, true);
}

void PhotoTest::AParameterIsReadAtCreation()
{
    QFETCH(QString, parameter);
    QFETCH(LogLines, log);
    const Photo task(parameter);
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task.m_type, TASK_RECORD_PHOTO);
    QCOMPARE(task.m_identifier, QString());
    QCOMPARE(task.GetDelayable_s(), 0U);
    QCOMPARE(task.IsRunning(), false);
}

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
