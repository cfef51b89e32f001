#include "PlayKinds.h"
#include "PlayingTest.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// What is deleted in a state in which nothing plays for it leaves nothing to be stopped.
class NotPlaying : public PlayingTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatHasNotBegunIsNotStopped_data() { AddWays(); }
    void WhatHasNotBegunIsNotStopped();
    void WhatHasCompletedIsNotStopped_data() { AddWays(); }
    void WhatHasCompletedIsNotStopped();
    void WhatIsBeingRequestedIsStoppedOnceItPlays_data();
    void WhatIsBeingRequestedIsStoppedOnceItPlays();
    void WhatIsNotMarkedAsRunningIsNotStopped_data() { AddWays(); }
    void WhatIsNotMarkedAsRunningIsNotStopped();
};

void NotPlaying::WhatHasNotBegunIsNotStopped()
{
    QFETCH(QString, by);
    WritePlaylist("first.mp3;60\n", u"day"_s);
    WriteSchedule("1111111|12:00:00|*|*|*|||PlayMessage|gong.mp3\n"
                  "1111111|12:00:00|*|*|*|||PlayPlaylist|day,-1,morning\n"
                  "1111111|12:00:00|*|*|*|||PlayStream|8554/live\n"
                  "1111111|12:00:00|*|*|*|||PlayRadioFm|98.5\n"
                  "1111111|12:00:00|*|*|*|||enableAux|1\n"
                  "1111111|12:00:00|*|*|*|||RecordPhoto|10,3\n");
    QVERIFY(StartDaemon());
    QVERIFY(Daemon().Take().contains(Loaded(6).first()));
    DeleteActions(by);
    COMPARE_LINES(Device().Calls(), QStringList());
}

void NotPlaying::WhatHasCompletedIsNotStopped()
{
    QFETCH(QString, by);
    QVERIFY(StartPlaying());
    Device().Emit("sound.PlayFileCompleted", {u"gong.mp3"_s});
    Device().Emit("sound.PlayPlaylistCompleted", {u"day"_s});
    Device().Emit("sound.StreamEnabled", {false});
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/PlayStream.cpp] TASK COMPLETED | PlayStream: rtsp://10.0.0.5:8554/live"_s));
    static_cast<void>(Daemon().Take());
    DeleteActions(by);
    COMPARE_LINES(Device().Calls(), REQUESTS);
}

void NotPlaying::WhatIsBeingRequestedIsStoppedOnceItPlays_data()
{
    QTest::addColumn<Request>("request");
    QTest::addColumn<QStringList>("stops");
    QTest::addColumn<QString>("by");
    const auto row = [](const char* id, const char* parameters, const QStringList& stops, const QString& by) {
        QTest::addRow("%s, %s", id, qPrintable(by)) << Request::Find(id, parameters) << stops << by;
    };
    for (const QString& by : WAYS)
        row("PlayStream", "8554/live", {STOPS[2]}, by);
    row("PlayFile", "gong.mp3", {STOPS[0]}, WAYS[1]);
    row("PlayPlaylist", "day,-1,morning", {STOPS[1]}, WAYS[1]);
    row("RadioFmSetFrequency", "98.5", {}, WAYS[1]);
    row("PlayAux", "1", {}, WAYS[1]);
    row("TakePhoto", nullptr, {}, WAYS[1]);
    row("TakePhotoStream", "10,3", {}, WAYS[1]);
}

// The daemon waits for the answer to its request while it is told to drop its actions.
void NotPlaying::WhatIsBeingRequestedIsStoppedOnceItPlays()
{
    constexpr int ANSWER_MS = 1000;
    QFETCH(Request, request);
    QFETCH(QStringList, stops);
    QFETCH(QString, by);
    Device().AnswerStatus(request.Method().toLatin1(), 0, ANSWER_MS, 1);
    WritePlaylist("first.mp3;60\n", u"day"_s);
    WriteSchedule(Due(request));
    Time().Set(MONDAY, {8, 29, 52});
    QVERIFY(StartDaemon());
    QVERIFY(RunDue(1));
    QVERIFY(WaitUntil([&] { return Device().Calls().contains(request.Call()); }));
    const QStringList requests = Device().Calls();
    COMPARE_LINES(Daemon().Take(2), QStringList());
    // Before the radio's time, so that it is not forced when it is loaded again.
    Time().Set(MONDAY, {8, 0});
    DeleteActions(by);
    COMPARE_LINES(Device().Calls(), requests + stops);
}

void NotPlaying::WhatIsNotMarkedAsRunningIsNotStopped()
{
    QFETCH(QString, by);
    WriteSchedule("1111111|08:30:00|*|*|*|||PlayRadioFm|98.5\n"
                  "1111111|08:30:00|*|*|*|||enableAux|1\n"
                  "1111111|08:30:00|*|*|*|||RecordPhoto\n"
                  "1111111|08:30:00|*|*|*|||RecordPhoto|10,3\n");
    const QStringList requests{u"sound.PlayRadioFm -"_s, u"sound.RadioFmSetFrequency d 98.5"_s, u"sound.PlayAux -"_s,
                               u"photo.TakePhoto -"_s, u"photo.TakePhotoStream i 10"_s};
    Time().Set(MONDAY, {8, 29, 52});
    QVERIFY(StartDaemon());
    QVERIFY(RunDue(4));
    QVERIFY(Device().WaitForCalls(requests.size()));
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    // Before the radio's time, so that it is not forced when it is loaded again.
    Time().Set(MONDAY, {8, 0});
    static_cast<void>(Daemon().Take());
    DeleteActions(by);
    COMPARE_LINES(Device().Calls(), requests);
}

OZNA_CASE(NotPlaying, NotPlaying)
#include "tst_NotPlaying.moc"
