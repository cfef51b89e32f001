#include "Rows.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayMessage.h"

#include <SoundManagerProxy.h>

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class PlayMessageEndTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnyFilesEndCompletesIt_data();
    void AnyFilesEndCompletesIt();
    void OtherSignalsDoNotCompleteIt();
    void OnlyOneEndCounts();
    void AFailedRequestDoesNotListen();
    void ACompletedMessageRunsAgain();
    void AMessageThatDoesNotRunIsJustDeleted();
    void AMessageDeletedByItsOwnEndIsFine();

private:
    static std::unique_ptr<PlayMessage> Gong()
    {
        auto message = std::make_unique<PlayMessage>(u"08:30:00"_s, u"gong.mp3"_s, u"70"_s);
        LogRecorder::Clear();
        return message;
    }

    static void EndFile(const QString& file)
    {
        QVERIFY(QMetaObject::invokeMethod(Scheduler::m_soundManProxy, "PlayFileCompleted", Q_ARG(QString, file)));
    }
};

void PlayMessageEndTest::AnyFilesEndCompletesIt_data()
{
    Rows<QString>::Add({
        {"its own file", u"gong.mp3"_s},
        {"another file", u"other.mp3"_s},
        {"no file", u""_s},
    });
}

void PlayMessageEndTest::AnyFilesEndCompletesIt()
{
    const QString& file = Rows<QString>::Current();
    const auto message = Gong();
    message->Run();
    LogRecorder::Clear();
    const QSignalSpy completed(message.get(), &PlayMessage::TaskCompleted);
    bool runningWhenTold = true;
    connect(message.get(), &PlayMessage::TaskCompleted, this, [&] { runningWhenTold = message->IsRunning(); });
    EndFile(file);
    EXPECT_LOG(9, {"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: " + file.toUtf8()});
    QCOMPARE(message->IsRunning(), false);
    QCOMPARE(completed.size(), 1);
    QVERIFY(!runningWhenTold);
}

void PlayMessageEndTest::OtherSignalsDoNotCompleteIt()
{
    const auto message = Gong();
    message->Run();
    LogRecorder::Clear();
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(u"gong.mp3"_s);
    Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
    EXPECT_LOG(9, {});
    QCOMPARE(message->IsRunning(), true);
}

void PlayMessageEndTest::OnlyOneEndCounts()
{
    const auto message = Gong();
    message->Run();
    const QSignalSpy completed(message.get(), &PlayMessage::TaskCompleted);
    EndFile(u"gong.mp3"_s);
    LogRecorder::Clear();
    EndFile(u"gong.mp3"_s);
    EXPECT_LOG(9, {});
    QCOMPARE(completed.size(), 1);
}

void PlayMessageEndTest::AFailedRequestDoesNotListen()
{
    Bus().Answer("PlayFile", 3);
    const auto message = Gong();
    message->Run();
    LogRecorder::Clear();
    const QSignalSpy completed(message.get(), &PlayMessage::TaskCompleted);
    EndFile(u"gong.mp3"_s);
    EXPECT_LOG(9, {});
    QCOMPARE(completed.size(), 0);
}

void PlayMessageEndTest::ACompletedMessageRunsAgain()
{
    const auto message = Gong();
    const QSignalSpy completed(message.get(), &PlayMessage::TaskCompleted);
    for (int day = 1; day <= 3; ++day)
    {
        QCOMPARE(message->Run(), true);
        EndFile(u"gong.mp3"_s);
        QCOMPARE(completed.size(), day);
    }
    QCOMPARE(Bus().Requests().size(), 6);
}

void PlayMessageEndTest::AMessageThatDoesNotRunIsJustDeleted()
{
    auto message = Gong();
    message->Run();
    EndFile(u"gong.mp3"_s);
    Bus().Clear();
    LogRecorder::Clear();
    message.reset();
    EXPECT_LOG(9, {});
    EXPECT_REQUESTS(Bus(), {});
}

void PlayMessageEndTest::AMessageDeletedByItsOwnEndIsFine()
{
    auto message = Gong();
    message->Run();
    connect(message.get(), &PlayMessage::TaskCompleted, this, [&message] { message.reset(); });
    Bus().Clear();
    EndFile(u"gong.mp3"_s);
    QVERIFY(message == nullptr);
    EXPECT_REQUESTS(Bus(), {});
}

OZNA_CASE(PlayMessageEnd, PlayMessageEndTest)
#include "tst_PlayMessageEnd.moc"
