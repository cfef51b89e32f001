#include "BusTest.h"

// A peer that never answers costs its time-out, no more and no less. Each row is registered as a test of its own, as
// most of them wait for long.
class TimeOuts : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void APeerThatNeverAnswersCostsItsTimeOut_data();
    void APeerThatNeverAnswersCostsItsTimeOut();
};

void TimeOuts::APeerThatNeverAnswersCostsItsTimeOut_data()
{
    QTest::addColumn<QByteArray>("task");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<int>("timeout_ms");
    QTest::addColumn<QStringList>("lines");

    const auto row = [](const char* name, const char* task, const char* method, int timeout_ms, const QString& line) {
        QTest::newRow(name) << QByteArray(task) << QByteArray(method) << timeout_ms << QStringList{line};
    };
    const QString noReply =
        QStringLiteral("Did not receive a reply. Possible causes include: the remote application did not send a reply, "
                       "the message bus security policy blocked the reply, the reply timeout expired, or the network "
                       "connection was broken.");
    constexpr int LIBRARY_DEFAULT_MS = 25000;
    row("volume", "Volume|10", "sound.SetMasterVolume", 3000,
        QStringLiteral("1 [tasks/Volume.cpp] SetVolume(10) request error: ") + noReply);
    row("playlist", "PlayPlaylist|day", "sound.PlayPlaylist", 5000,
        QStringLiteral("1 [tasks/PlayPlaylist.cpp] PlayPlaylist request error: ") + noReply);
    row("radio", "PlayRadioFm|98.5", "sound.PlayRadioFm", 20000,
        QStringLiteral("4 [tasks/PlayRadioFm.cpp] PlayRadioFm() request error: ") + noReply);
    row("photo", "RecordPhoto", "photo.TakePhoto", 5000,
        QStringLiteral("1 [tasks/Photo.cpp] TakePhoto() request error: ") + noReply);
    row("frequency", "SetCpuFreq|1", "freq.SetFreq", 2000,
        QStringLiteral("1 [tasks/CpuFreq.cpp] SetFreq(456) request error: ") + noReply);
    row("gps", "Gps|1", "gps.SetEnabled", 5000,
        QStringLiteral("1 [tasks/Gps.cpp] SetEnabled(1) request error: ") + noReply);
    row("light", "Light|0", "light.Switch", LIBRARY_DEFAULT_MS,
        QStringLiteral("1 [tasks/Light.cpp] Switch(0) request error"));
    row("network", "Lan|0", "network.DisableLan", LIBRARY_DEFAULT_MS,
        QStringLiteral("1 [tasks/Lan.cpp] DisableLan request error: ") + noReply);
}

void TimeOuts::APeerThatNeverAnswersCostsItsTimeOut()
{
    QFETCH(QByteArray, task);
    QFETCH(QByteArray, method);
    QFETCH(int, timeout_ms);
    QFETCH(QStringList, lines);
    WritePlaylist("first.mp3;60\n", QStringLiteral("day"));
    WriteSchedule("1111111|08:30:00|*|*|*|||" + task + '\n');
    Device().AnswerNever(method.constData(), 1);
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 54), Qt::UTC));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QVERIFY(Device().WaitForCalls(1));
    const qint64 asked_ms = Device().CallTimes().first();
    QVERIFY(WaitUntil([&] { return Daemon().Log().contains(lines.first()); }, timeout_ms + WAIT_MS));
    const qint64 waited_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    // The bus library's timers may be off by a twentieth.
    QVERIFY2(waited_ms >= timeout_ms * 94 / 100 && waited_ms < timeout_ms * 106 / 100 + 1500,
             qPrintable(QString::number(waited_ms)));
    QStringList failure = Daemon().Take(4).mid(2);
    failure.removeOne(QStringLiteral("4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist..."));
    COMPARE_LINES(failure, lines);
    // The loop goes on.
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
}

QTEST_GUILESS_MAIN(TimeOuts)
#include "tst_TimeOuts.moc"
