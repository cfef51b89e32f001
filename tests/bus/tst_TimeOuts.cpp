#include "BusMessages.h"
#include "BusTest.h"
#include "Request.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

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
    return !calls.isEmpty() && calls.last().startsWith(QString::fromLatin1(method) + u' ');
}

void TimeOuts::APeerThatNeverAnswersCostsItsTimeOut_data()
{
    QTest::addColumn<Request>("request");
    const auto row = [](const char* name, const char* id, const char* parameters) {
        QTest::newRow(name) << Request::Find(id, parameters);
    };
    row("message", "PlayFile", "gong.mp3");
    row("volume", "SetMasterVolume", "50");
    row("playlist", "PlayPlaylist", "day");
    row("radio", "PlayRadioFm", "98.5");
    row("photo", "TakePhoto", nullptr);
    row("frequency", "SetFreq", "456");
    row("gps", "SetEnabled(GPS)", "1");
    row("stopmessage", "StopPlay(file)", nullptr);
    row("stopplaylist", "StopPlay(playlist)", "morning");
    row("stopstream", "StopPlay(stream)", nullptr);
    row("stopradio", "StopPlay(radiofm)", nullptr);
    row("amplifiers", "SetAmplifiers", "5");
    row("radiooff", "StopPlay(radiofm), PlayRadioFm 0", "0");
    row("tuning", "RadioFmSetFrequency", "98.5");
    row("aux", "PlayAux", "1");
    row("auxoff", "StopPlay(aux)", "0");
    row("camera", "EnableCamera", "1");
    row("series", "TakePhotoStream", "10,2");
    row("intensity", "SetIntensity", "50");
    row("lan", "EnableLan", "1");
    row("light", "Switch", "0");
    row("network", "DisableLan", "0");
}

void TimeOuts::APeerThatNeverAnswersCostsItsTimeOut()
{
    QFETCH(Request, request);
    const int timeout_ms = request.Row().timeout_ms;
    const QByteArray method = request.Method().toLatin1();
    const QStringList lines = Answered(request.Records(Outcome::BUS_ERROR), QString::fromLatin1(NO_REPLY), 0);
    const QString outcome = Shown(lines, 9).last();
    WritePlaylist("first.mp3;60\n", u"day"_s);
    WriteSchedule("1111111|08:30:00|*|*|*|||" + request.Schedule().toLatin1() + '\n');
    Device().AnswerNever(method.constData(), 1);
    Time().Set(MONDAY, {8, 29, 52});
    QVERIFY(StartAndTakeLog());
    QVERIFY(RunDue(1));
    QVERIFY(WaitUntil([&] { return IsAsked(method); }));
    const qint64 asked_ms = Device().CallTimes().last();
    QVERIFY(WaitUntil([&] { return Daemon().Log().contains(outcome); }, timeout_ms + WAIT_MS));
    const qint64 waited_ms = QDateTime::currentMSecsSinceEpoch() - asked_ms;
    // The bus library's timers may be off by a twentieth.
    QVERIFY2(waited_ms >= timeout_ms * 94 / 100 && waited_ms < timeout_ms * 3 / 2 + 2500,
             qPrintable(QString::number(waited_ms)));
    const QStringList failures = Daemon().Take(2);
    COMPARE_LINES(failures, Shown(lines, 2));
    // The loop goes on.
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
}

OZNA_CASE(TimeOuts, TimeOuts)
#include "tst_TimeOuts.moc"
