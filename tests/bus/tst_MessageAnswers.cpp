#include "MessageTest.h"
#include "Suite.h"

#include <limits>

using namespace Lines;
using namespace Qt::StringLiterals;

// What the sound manager may answer to a message, and what comes of it.
class MessageAnswers : public MessageTest
{
    Q_OBJECT

private Q_SLOTS:
    void ARefusalIsLogged_data();
    void ARefusalIsLogged();
    void AnAnswerOfAnotherTypeIsConverted_data();
    void AnAnswerOfAnotherTypeIsConverted();
    void AnAbsentSoundManagerIsLogged();
    void ASoundManagerThatNeverAnswersCostsItsTimeOut();
    void ASoundManagerThatExitsInTheCallIsLogged();
};

void MessageAnswers::ARefusalIsLogged_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("positive") << 3;
    QTest::newRow("negative") << -1;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
}

void MessageAnswers::ARefusalIsLogged()
{
    QFETCH(int, status);
    Device().AnswerStatus(PLAY_FILE, status, 0, 1);
    QVERIFY(StartAndWaitForRequest());
    COMPARE_LINES(Daemon().Take(4),
                  EARLY + READY_MESSAGE + QStringList{u"1 [tasks/PlayMessage.cpp] PlayFile error: %1"_s.arg(status)});
    // Nothing runs: a stop is not sent.
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Device().Calls(), {PLAY});
    COMPARE_LINES(Daemon().Take(4), Ended());
}

void MessageAnswers::AnAnswerOfAnotherTypeIsConverted_data()
{
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QString>("record");
    const auto error = [](const char* status) {
        return u"1 [tasks/PlayMessage.cpp] PlayFile error: %1"_s.arg(QLatin1String(status));
    };
    QTest::newRow("no value") << QVariantList() << Requested();
    QTest::newRow("a text that is no number") << QVariantList{u"ok"_s} << Requested();
    QTest::newRow("a text that is a number") << QVariantList{u"7"_s} << error("7");
    QTest::newRow("an unsigned number") << QVariantList{7U} << error("7");
    QTest::newRow("true") << QVariantList{true} << error("1");
    QTest::newRow("false") << QVariantList{false} << Requested();
    QTest::newRow("a list of texts") << QVariantList{QStringList{u"7"_s}} << Requested();
    QTest::newRow("a map") << QVariantList{QVariantMap{{u"status"_s, 7}}} << Requested();
    QTest::newRow("a status with more values") << QVariantList{7, u"more"_s, 1.5} << error("7");
    QTest::newRow("0 with more values") << QVariantList{0, 7} << Requested();
    QTest::newRow("a number that no int holds") << QVariantList{1e300} << error("2147483647");
}

void MessageAnswers::AnAnswerOfAnotherTypeIsConverted()
{
    QFETCH(QVariantList, values);
    QFETCH(QString, record);
    Device().AnswerValues(PLAY_FILE, values, 0, 1);
    QVERIFY(StartAndWaitForRequest());
    const QStringList records = Daemon().Take();
    QCOMPARE(records.last(), record);
}

void MessageAnswers::AnAbsentSoundManagerIsLogged()
{
    Device().SetPresent("sound", false);
    WriteSchedule(MessageLine("gong.mp3,70"));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    const QString error = u"1 [tasks/PlayMessage.cpp] PlayFile request error: The name "
                          "com.kestrelix.ozna.soundmanager was not provided by any .service files"_s;
    QVERIFY(Daemon().WaitForLog(error));
    COMPARE_LINES(Daemon().Take(4), EARLY + READY_MESSAGE + QStringList{error});
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
}

void MessageAnswers::ASoundManagerThatNeverAnswersCostsItsTimeOut()
{
    Device().AnswerNever(PLAY_FILE, 1);
    WriteSchedule(MessageLine("gong.mp3"));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(1));
    const qint64 asked_ms = Device().CallTimes().first();
    static_cast<void>(Daemon().Take());
    const QString error = u"1 [tasks/PlayMessage.cpp] PlayFile request error: Did not receive a reply. "
                          "Possible causes include: the remote application did not send a reply, the "
                          "message bus security policy blocked the reply, the reply timeout expired, or "
                          "the network connection was broken."_s;
    QVERIFY(Daemon().WaitForLog(error));
    const qint64 waited_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    QVERIFY2(waited_ms >= 2800 && waited_ms < 10000, qPrintable(QString::number(waited_ms)));
    COMPARE_LINES(Daemon().Take(2), {error});
}

void MessageAnswers::ASoundManagerThatExitsInTheCallIsLogged()
{
    Device().AnswerByExit(PLAY_FILE);
    WriteSchedule(MessageLine("gong.mp3"));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QVERIFY(WaitUntil([this] { return !Daemon().Log(2).isEmpty(); }));
    const QStringList errors = Daemon().Take(2);
    QCOMPARE(errors.size(), 1);
    QVERIFY2(errors[0].startsWith(u"1 [tasks/PlayMessage.cpp] PlayFile request error: "_s), qPrintable(errors[0]));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
}

OZNA_CASE(MessageAnswers, MessageAnswers)
#include "tst_MessageAnswers.moc"
