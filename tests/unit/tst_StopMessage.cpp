#include "Suite.h"
#include "UnitTest.h"
#include "tasks/StopMessage.h"

using namespace Qt::StringLiterals;

class StopMessageTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ItsMakingIsLogged();
    void ItAsksToStopTheFile_data();
    void ItAsksToStopTheFile();
};

void StopMessageTest::ItsMakingIsLogged()
{
    const StopMessage stop;
    EXPECT_LOG(9, {{4, "[tasks/StopMessage.cpp] TASK CREATED | StopMessage"}});
    QCOMPARE(stop.m_type, TASK_STOP_MESSAGE);
    QCOMPARE(stop.m_identifier, QString());
    QCOMPARE(stop.GetDelayable_s(), 0U);
    QCOMPARE(stop.metaObject()->className(), "StopMessage");
    EXPECT_REQUESTS(Bus(), {});
}

void StopMessageTest::ItAsksToStopTheFile_data()
{
    QTest::addColumn<QString>("busError"); // null: none
    QTest::addColumn<int>("status");
    QTest::addColumn<LogLine>("line");
    QTest::newRow("accepted") << QString() << 0
                              << LogLine(9, "[tasks/StopMessage.cpp] TASK REQUESTED | StopPlay(file)");
    QTest::newRow("refused") << QString() << 2 << LogLine(1, "[tasks/StopMessage.cpp] StopPlay(file) error: 2\n");
    QTest::newRow("refused with a negative status")
        << QString() << -2 << LogLine(1, "[tasks/StopMessage.cpp] StopPlay(file) error: -2\n");
    QTest::newRow("failed on the bus") << u"gone"_s << 0
                                       << LogLine(1, "[tasks/StopMessage.cpp] StopPlay(file) request error: gone\n");
    QTest::newRow("failed without a text")
        << u""_s << 0 << LogLine(1, "[tasks/StopMessage.cpp] StopPlay(file) request error: \n");
}

void StopMessageTest::ItAsksToStopTheFile()
{
    QFETCH(QString, busError);
    QFETCH(int, status);
    QFETCH(LogLine, line);
    Bus().Answer("StopPlay", status);
    if (!busError.isNull())
        Bus().AnswerBusError("StopPlay", busError);
    StopMessage stop;
    LogRecorder::Clear();
    // It may run again on a later day.
    for (int day = 0; day < 2; ++day)
    {
        QCOMPARE(stop.Run(), busError.isNull() && status == 0);
        QCOMPARE(stop.IsRunning(), false);
        EXPECT_LOG(9, {line});
        EXPECT_REQUESTS(Bus(), {u"soundmanager StopPlay(s:file, s:)"_s});
    }
}

OZNA_CASE(StopMessage, StopMessageTest)
#include "tst_StopMessage.moc"
