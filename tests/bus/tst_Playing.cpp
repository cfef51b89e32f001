#include "BusTest.h"
#include "Lines.h"

#include <csignal>

using namespace Lines;

// A message, a playlist and a stream play at once: how they end, by their completion or with their actions, and what of
// a schedule leaves nothing behind that would have to be stopped.
class Playing : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void EndsWithTheSignalOfItsKind();
    void AStreamThatIsEnabledGoesOn();
    void IsStoppedOnceWithItsActions_data();
    void IsStoppedOnceWithItsActions();
    void IsStoppedInBoundedTimeWhenTheSchedulerEnds_data();
    void IsStoppedInBoundedTimeWhenTheSchedulerEnds();
    void WhatWasRefusedIsNotStopped();
    void WhatIsNotMarkedAsRunningIsNotStopped_data();
    void WhatIsNotMarkedAsRunningIsNotStopped();

private:
    [[nodiscard]] bool StartPlaying();
    void DeleteActions(const QString& by);
};

namespace
{

const QStringList RUNNING{
    QStringLiteral("4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it"),
    QStringLiteral("4 [tasks/PlayPlaylist.cpp] Scheduled Playlist day running: stop it (from "
                   "/com/kestrelix/ozna/updatemanager/updateobj)"),
    QStringLiteral("4 [tasks/PlayStream.cpp] Scheduled Stream rtsp://10.0.0.5:8554/live running: stop it")};

const QStringList NOT_STOPPED{QStringLiteral("2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file"),
                              QStringLiteral("2 [tasks/PlayPlaylist.cpp] Impossible to stop scheduled playlist"),
                              QStringLiteral("2 [tasks/PlayStream.cpp] Impossible to stop scheduled stream")};

const QStringList STOPS{QStringLiteral("sound.StopPlay ss file "), QStringLiteral("sound.StopPlay ss playlist morning"),
                        QStringLiteral("sound.StopPlay ss stream ")};

const QStringList REQUESTS{QStringLiteral("sound.PlayFile ss gong.mp3 08:30:00"),
                           QStringLiteral("sound.PlayPlaylist ssusb day morning 1 08:30:00 false"),
                           QStringLiteral("sound.PlayStream su rtsp://10.0.0.5:8554/live 0")};

const QStringList WAYS{QStringLiteral("disabling"), QStringLiteral("reload"), QStringLiteral("file update"),
                       QStringLiteral("another file"), QStringLiteral("SIGTERM")};

QStringList Alternated(const QStringList& first, const QStringList& second)
{
    QStringList lines;
    for (qsizetype i = 0; i < first.size(); ++i)
        lines << first[i] << second[i];
    return lines;
}

} // namespace

bool Playing::StartPlaying()
{
    WritePlaylist("# three tracks\nfirst.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", QStringLiteral("day"));
    WriteFile(DataPath(QStringLiteral("ozna.ini")), "[GENERAL]\nServerIp=10.0.0.5\n");
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n"
                  "1111111|08:30:00|*|*|*|||PlayPlaylist|day,-1,morning\n"
                  "1111111|08:30:00|*|*|*|||PlayStream|8554/live\n");
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 54), Qt::UTC));
    if (!StartDaemon() || !Device().WaitForCalls(3))
        return false;
    const bool answered = Client().Call("IsEnabled") == QStringLiteral("0,true,schedule.csv");
    static_cast<void>(Daemon().Take());
    // Nothing of this is due any more, so that what is loaded again is not asked for again.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 40), Qt::UTC));
    return answered;
}

void Playing::DeleteActions(const QString& by)
{
    if (by == WAYS[0])
        QCOMPARE(Client().Call("SetEnabled", {false}), QStringLiteral("0"));
    else if (by == WAYS[1])
        QCOMPARE(Client().Call("Reload"), QStringLiteral("0"));
    else if (by == WAYS[2])
        Device().Emit("update.FilesUpdated", {0, 2});
    else if (by == WAYS[3])
        QCOMPARE(Client().Call("SetScheduleFile", {QStringLiteral("none.csv")}), QStringLiteral("0"));
    else
        QCOMPARE(StopDaemon(), 0);
    QVERIFY(Daemon().WaitForLog(CLEANED.first()));
}

void Playing::EndsWithTheSignalOfItsKind()
{
    QVERIFY(StartPlaying());
    COMPARE_LINES(Device().Calls(), REQUESTS);
    Device().Emit("sound.PlayPlaylistCompleted", {QStringLiteral("another")});
    QVERIFY(Daemon().WaitForLog(QStringLiteral("4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: day")));
    Device().Emit("sound.StreamEnabled", {false});
    QVERIFY(Daemon().WaitForLog(
        QStringLiteral("4 [tasks/PlayStream.cpp] TASK COMPLETED | PlayStream: rtsp://10.0.0.5:8554/live")));
    Device().Emit("sound.PlayFileCompleted", {QStringLiteral("another.mp3")});
    QVERIFY(Daemon().WaitForLog(QStringLiteral("4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: another.mp3")));
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Device().Calls(), REQUESTS);
}

void Playing::AStreamThatIsEnabledGoesOn()
{
    QVERIFY(StartPlaying());
    Device().Emit("sound.StreamEnabled", {true});
    // Signals come in order: once the next one shows, this one has been heard.
    Device().Emit("sound.PlayFileCompleted", {QStringLiteral("gong.mp3")});
    QVERIFY(Daemon().WaitForLog(QStringLiteral("4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: gong.mp3")));
    static_cast<void>(Daemon().Take());
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended(RUNNING.mid(1)));
}

void Playing::IsStoppedOnceWithItsActions_data()
{
    QTest::addColumn<QString>("by");
    for (const QString& by : WAYS)
        QTest::newRow(qPrintable(by)) << by;
}

void Playing::IsStoppedOnceWithItsActions()
{
    QFETCH(QString, by);
    QVERIFY(StartPlaying());
    Device().Forget();
    DeleteActions(by);
    COMPARE_LINES(Device().Calls(), STOPS);
    QStringList lines = Daemon().Take(4);
    lines.removeIf([](const QString& line) { return !line.contains(QStringLiteral("running: stop it")); });
    COMPARE_LINES(lines, RUNNING);
}

void Playing::IsStoppedInBoundedTimeWhenTheSchedulerEnds_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("atLeast_ms");
    QTest::addColumn<int>("atMost_ms");
    QTest::newRow("accepted") << QStringLiteral("accepted") << RUNNING << 0 << 2500;
    QTest::newRow("refused") << QStringLiteral("refused") << Alternated(RUNNING, NOT_STOPPED) << 0 << 2500;
    QTest::newRow("never answered") << QStringLiteral("never") << Alternated(RUNNING, NOT_STOPPED) << 8400 << 11500;
}

void Playing::IsStoppedInBoundedTimeWhenTheSchedulerEnds()
{
    QFETCH(QString, answer);
    QFETCH(QStringList, lines);
    QFETCH(int, atLeast_ms);
    QFETCH(int, atMost_ms);
    if (answer == QStringLiteral("refused"))
        Device().AnswerStatus("sound.StopPlay", 2);
    else if (answer == QStringLiteral("never"))
        Device().AnswerNever("sound.StopPlay");
    QVERIFY(StartPlaying());
    const qint64 asked_ms = QDateTime::currentMSecsSinceEpoch();
    QCOMPARE(StopDaemon(), 0);
    const qint64 took_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    QVERIFY2(took_ms >= atLeast_ms && took_ms < atMost_ms, qPrintable(QString::number(took_ms)));
    COMPARE_LINES(Daemon().Take(4), Ended(lines));
    COMPARE_LINES(Device().Calls(), REQUESTS + STOPS);
}

void Playing::WhatWasRefusedIsNotStopped()
{
    for (const char* method : {"sound.PlayFile", "sound.PlayPlaylist", "sound.PlayStream"})
        Device().AnswerStatus(method, 9);
    WritePlaylist("first.mp3;60\n", QStringLiteral("day"));
    WriteFile(DataPath(QStringLiteral("ozna.ini")), "[GENERAL]\nServerIp=10.0.0.5\n");
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayStream|8554/live\n");
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 54), Qt::UTC));
    QVERIFY(StartDaemon());
    const QString refused = QStringLiteral("1 [tasks/PlayStream.cpp] PlayStream error: 9");
    QVERIFY(Daemon().WaitForLog(refused));
    COMPARE_LINES(Daemon().Take(2), {refused});
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Daemon().Take(4), Ended());
    COMPARE_LINES(Device().Calls(), {QStringLiteral("sound.PlayStream su rtsp://10.0.0.5:8554/live 0")});
}

void Playing::WhatIsNotMarkedAsRunningIsNotStopped_data()
{
    QTest::addColumn<QString>("by");
    for (const QString& by : WAYS)
        QTest::newRow(qPrintable(by)) << by;
}

void Playing::WhatIsNotMarkedAsRunningIsNotStopped()
{
    QFETCH(QString, by);
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayRadioFm|98.5\n"
                  "1111111|08:30:00|*|*|*|||enableAux|1\n"
                  "1111111|08:30:00|*|*|*|||RecordPhoto\n"
                  "1111111|08:30:00|*|*|*|||RecordPhoto|10,3\n");
    const QStringList requests{QStringLiteral("sound.PlayRadioFm -"),
                               QStringLiteral("sound.RadioFmSetFrequency d 98.5"), QStringLiteral("sound.PlayAux -"),
                               QStringLiteral("photo.TakePhoto -"), QStringLiteral("photo.TakePhotoStream i 10")};
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 54), Qt::UTC));
    QVERIFY(StartDaemon());
    QVERIFY(Device().WaitForCalls(requests.size()));
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
    // Before the radio's time, so that it is not forced when it is loaded again.
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 0), Qt::UTC));
    static_cast<void>(Daemon().Take());
    DeleteActions(by);
    COMPARE_LINES(Device().Calls(), requests);
}

QTEST_GUILESS_MAIN(Playing)
#include "tst_Playing.moc"
