#include "PassingTest.h"
#include "Rows.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

namespace
{

const QTime NOON(12, 0);

} // namespace

// Starts that are due shortly after a schedule is loaded, or shortly before a stop. What the log says of a start that
// does not come is told elsewhere.
class NearLoadsTest final : public PassingTest
{
    Q_OBJECT
private Q_SLOTS:
    void WhatIsDueWithinThreeSecondsIsNotStarted_data();
    void WhatIsDueWithinThreeSecondsIsNotStarted();
    void AMessageThatWasAskedForIsStopped_data();
    void AMessageThatWasAskedForIsStopped();
    void ASkippedPlaylistIsStartedOnceItsStopIsWatched();
    void ALightOfMidnightIsForced();

private:
    // The method of every request, with its time: "12:00:04 SetMasterVolume".
    [[nodiscard]] QStringList TakeMethods();
};

QStringList NearLoadsTest::TakeMethods()
{
    QStringList methods;
    for (const QString& request : TakeRequests())
        methods.append(request.section(u' ', 0, 1));
    return methods;
}

void NearLoadsTest::WhatIsDueWithinThreeSecondsIsNotStarted_data()
{
    QTest::addColumn<QByteArray>("task");
    QTest::addColumn<int>("due_s");
    QTest::addColumn<QStringList>("methods");
    const auto row = [](const char* task, int due_s, const QStringList& methods) {
        QTest::addRow("%s, %d s after the load", task, due_s) << QByteArray(task) << due_s << methods;
    };
    for (const int due_s : {0, 1, 2, 3})
    {
        row("Volume|1", due_s, {});
        row("PlayMessage|gong.mp3", due_s, {});
        // What may start late is late.
        row("PlayPlaylist|day", due_s, {u"12:00:03 PlayPlaylist"_s});
    }
    row("Volume|1", 4, {u"12:00:04 SetMasterVolume"_s});
    row("PlayMessage|gong.mp3", 4, {u"12:00:03 PlayFile"_s});
    row("PlayPlaylist|day", 4, {u"12:00:03 PlayPlaylist"_s});
}

void NearLoadsTest::WhatIsDueWithinThreeSecondsIsNotStarted()
{
    QFETCH(QByteArray, task);
    QFETCH(int, due_s);
    QFETCH(QStringList, methods);
    WritePlaylist();
    const QByteArray line = NOON.addSecs(due_s).toString().toLatin1() + ' ' + task;
    for (const bool isReloaded : {false, true})
    {
        Time().SetLocal(isReloaded ? QTime(11, 0) : NOON);
        StartSchedule({line});
        Time().SetLocal(NOON);
        if (isReloaded)
            QCOMPARE(Engine().Reload(), 0);
        Pass(20);
        QCOMPARE(TakeMethods(), methods);
    }
    LogRecorder::Clear();
}

void NearLoadsTest::AMessageThatWasAskedForIsStopped_data()
{
    const QString first = u"12:00:12 PlayFile"_s;
    // loaded_s: before the message's time
    Rows<int, QStringList>::Add({
        {"16 s", 16, {first}},
        {"15 s", 15, {first}},
        {"7 s", 7, {first, u"12:00:13 StopPlay"_s, u"12:00:16 PlayFile"_s}},
        {"4 s", 4, {first, u"12:00:16 StopPlay"_s, u"12:00:19 PlayFile"_s}},
        {"3 s", 3, {first, u"12:00:17 StopPlay"_s}},
        {"1 s", 1, {first, u"12:00:19 StopPlay"_s}},
    });
}

void NearLoadsTest::AMessageThatWasAskedForIsStopped()
{
    const auto& [loaded_s, methods] = Rows<int, QStringList>::Current();
    constexpr int DUE_S = 20;
    Time().SetLocal(NOON);
    StartSchedule({"12:00:20 PlayMessage|gong.mp3"});
    Pass(DUE_S - loaded_s);
    QCOMPARE(Engine().Reload(), 0);
    Pass(40);
    QCOMPARE(TakeMethods(), methods);
    LogRecorder::Clear();
}

void NearLoadsTest::ASkippedPlaylistIsStartedOnceItsStopIsWatched()
{
    WritePlaylist();
    Time().SetLocal(NOON);
    StartSchedule({"12:00:10 PlayPlaylist|day,,id", "12:00:12 StopPlaylist|id"});
    Pass(5);
    QCOMPARE(TakeMethods(), QStringList());
    QCOMPARE(LogRecorder::Messages(2).filter(u"VIRTUALLY STOPPED"_s).size(), 1);
    Pass(10, 1000);
    QCOMPARE(TakeMethods(), QStringList({u"12:00:06 PlayPlaylist"_s, u"12:00:12 StopPlay"_s}));
    LogRecorder::Clear();
}

void NearLoadsTest::ALightOfMidnightIsForced()
{
    for (const char* start : {"00:00:00", "25:00:00"})
    {
        Time().SetLocal(NOON);
        StartSchedule({QByteArray(start) + " Light|0"});
        Pass(5);
        QCOMPARE(TakeMethods(), QStringList{u"12:00:03 Switch"_s});
        // And at no other time.
        Time().SetLocal(QTime(23, 59, 30));
        Pass(60);
        QCOMPARE(TakeMethods(), QStringList());
    }
}

OZNA_CASE(NearLoads, NearLoadsTest)
#include "tst_NearLoads.moc"
