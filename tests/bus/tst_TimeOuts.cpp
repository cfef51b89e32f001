#include "BusTest.h"
#include "Suite.h"

// A peer that never answers costs its time-out, no more and no less. Each row is registered as a test of its own, as
// most of them wait for long.
class TimeOuts : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void APeerThatNeverAnswersCostsItsTimeOut_data();
    void APeerThatNeverAnswersCostsItsTimeOut();

private:
    // Whether the latest call is one of that method.
    [[nodiscard]] bool IsAsked(const QByteArray& method);
};

bool TimeOuts::IsAsked(const QByteArray& method)
{
    const QStringList calls = Device().Calls();
    return !calls.isEmpty() && calls.last().startsWith(QString::fromLatin1(method) + QLatin1Char(' '));
}

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
    const auto soundRow = [&](const char* name, const char* task, const char* method, const char* lineStart) {
        row(name, task, method, 3000, QString::fromLatin1(lineStart) + noReply);
    };
    soundRow("stopmessage", "StopMessage", "sound.StopPlay",
             "1 [tasks/StopMessage.cpp] StopPlay(file) request error: ");
    soundRow("stopplaylist", "StopPlaylist|p1", "sound.StopPlay",
             "1 [tasks/StopPlaylist.cpp] StopPlay(playlist) request error: ");
    soundRow("stopstream", "StopStream", "sound.StopPlay", "1 [tasks/StopStream.cpp] StopPlay(stream) request error: ");
    soundRow("stopradio", "StopRadioFm", "sound.StopPlay",
             "1 [tasks/StopRadioFm.cpp] StopPlay(radiofm) request error: ");
    soundRow("amplifiers", "Amplifiers|5", "sound.SetAmplifiers",
             "1 [tasks/Amplifiers.cpp] SetAmplifiers(0x05) request error: ");
    // Judged by the status alone, which a call without an answer does not bring.
    row("radiooff", "PlayRadioFm|0", "sound.StopPlay", 3000,
        QStringLiteral("4 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm(radiofm): 0 (stop)"));
    row("tuning", "PlayRadioFm|98.5", "sound.RadioFmSetFrequency", 3000,
        QStringLiteral("9 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm/SetFrequency: 98.50"));
    row("aux", "enableAux|1", "sound.PlayAux", 3000,
        QStringLiteral("4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(1): 0"));
    row("auxoff", "enableAux|0", "sound.StopPlay", 3000,
        QStringLiteral("4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(0): 0 (stop)"));
    row("camera", "Camera|1", "photo.EnableCamera", 5000,
        QStringLiteral("4 [tasks/Camera.cpp] EnableCamera(1) request error: ") + noReply);
    row("series", "RecordPhoto|10,2", "photo.TakePhotoStream", 5000,
        QStringLiteral("4 [tasks/Photo.cpp] TakePhotoStream(10) request error: ") + noReply);
    row("intensity", "Light|5", "light.SetIntensity", LIBRARY_DEFAULT_MS,
        QStringLiteral("1 [tasks/Light.cpp] SetIntensity(5) request error"));
    row("lan", "Lan|1", "network.EnableLan", LIBRARY_DEFAULT_MS,
        QStringLiteral("1 [tasks/Lan.cpp] EnableLan(dhcp) request error: ") + noReply);
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
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 52), Qt::UTC));
    QVERIFY(StartDaemon());
    static_cast<void>(Daemon().Take());
    QVERIFY(WaitUntil([&] { return IsAsked(method); }));
    const qint64 asked_ms = Device().CallTimes().last();
    QVERIFY(WaitUntil([&] { return Daemon().Log().contains(lines.first()); }, timeout_ms + WAIT_MS));
    const qint64 waited_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    // The bus library's timers may be off by a twentieth.
    QVERIFY2(waited_ms >= timeout_ms * 94 / 100 && waited_ms < timeout_ms * 3 / 2 + 2500,
             qPrintable(QString::number(waited_ms)));
    const QStringList failures = Daemon().Take(2);
    COMPARE_LINES(failures, lines.first().front() <= QLatin1Char('2') ? lines : QStringList());
    // The loop goes on.
    QCOMPARE(Client().Call("IsEnabled"), QStringLiteral("0,true,schedule.csv"));
}

OZNA_CASE(TimeOuts, TimeOuts)
#include "tst_TimeOuts.moc"
