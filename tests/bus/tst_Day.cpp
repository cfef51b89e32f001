#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

using namespace Lines;
using namespace Qt::StringLiterals;

// A day of a realistic schedule with every kind of task through the real process, under a clock that is stepped from
// one event to the next. What the device has to receive is written down by hand.
class Day : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void SendsWhatIsDueAndNothingElse();

private:
    void Step(const QDateTime& due, const QStringList& expected);

    // What the device has to have received so far.
    QStringList m_expected;
};

namespace
{

const QByteArray SCHEDULE = "# The shop in the high street; opening hours 8 to 18.\n"
                            "\n"
                            "1111111|06:00:00|*|*|*|||Gps|1\n"
                            "1111111|06:30:00|*|*|*|||Lan|1\n"
                            "1111100|07:00:00|*|*|*|||SetCpuFreq|456\n"
                            "1111100|07:00:00|*|*|*|||Light|80\n"
                            "1111100|07:00:00|*|*|*|||Amplifiers|3\n"
                            "1111100|07:00:00|*|*|*|||Volume|60\n"
                            "1111100|07:30:00|*|*|*|||PlayRadioFm|98.5\n"
                            "1111111|08:30:00|*|*|*|20240101|20241231|PlayMessage|gong.mp3,70\n"
                            "0010000|08:45:00|*|*|*|||PlayMessage|wednesday.mp3\n"
                            "1111111|08:50:00|*|*|*||20231231|PlayMessage|last-year.mp3\n"
                            "1111100|09:00:00|*|*|*|||StopRadioFm\n"
                            "1111100|10:00:00|*|*|*|||PlayPlaylist|morning,50,p1\n"
                            "1111100|10:00:40|*|*|*|||StopPlaylist|p1\n"
                            "1111100|11:00:00|*|*|*|||19|1,1\n"
                            "1111100|12:00:00|*|*|*|||enableAux|1\n"
                            "1111100|12:30:00|*|*|*|||enableAux|0\n"
                            "1111100|13:00:00|*|*|*|||PlayStream|8554/live,30\n"
                            "1111100|13:30:00|*|*|*|||StopStream\n"
                            "1111100|14:00:00|*|*|*|||Camera|1\n"
                            "1111100|14:01:00|*|*|*|||RecordPhoto|5,2\n"
                            "1111100|15:00:00|*|*|*|||StopMessage\n"
                            "0000000|16:00:00|15|1|*|||PlayMessage|anniversary.mp3\n"
                            "0000000|16:30:00|16|1|*|||PlayMessage|a-day-late.mp3\n"
                            "1111100|18:00:00|*|*|*|||Light|0\n"
                            "1111100|18:00:00|*|*|*|||Lan|0\n"
                            "1111100|18:30:00|*|*|*|||RecordMic|10\n";

} // namespace

// Sets the clock to shortly before due, and waits until what is expected has come and that second is over. All that the
// device has received since the morning is compared.
void Day::Step(const QDateTime& due, const QStringList& expected)
{
    constexpr int BEFORE_S = 5;
    m_expected += expected;
    Time().Set(due.addSecs(-BEFORE_S));
    QVERIFY(Device().WaitForCalls(m_expected.size()));
    QVERIFY(WaitUntil([&] { return Time().Now() >= due.addMSecs(1250); }));
    // The answer shows that what began in that second is done.
    QCOMPARE(Client().Call("IsEnabled"), u"0,true,schedule.csv"_s);
    COMPARE_LINES(Device().Calls(), m_expected);
}

#define STEP(...)                                                                                                      \
    do                                                                                                                 \
    {                                                                                                                  \
        Step(__VA_ARGS__);                                                                                             \
        if (QTest::currentTestFailed())                                                                                \
            return;                                                                                                    \
    } while (false)

void Day::SendsWhatIsDueAndNothingElse()
{
    WriteSchedule(SCHEDULE);
    WritePlaylist("# what plays in the morning\nfirst.mp3;60\nsecond.mp3;30\n", u"morning"_s);
    Time().Set(MONDAY, {5, 59});
    QVERIFY(StartDaemon());
    COMPARE_LINES(Daemon().Take(2),
                  {u"2 [tasks/CpuFreq.cpp] Can't parse Cpu frequency from parameters: '456'. Using 456."_s,
                   u"1 [Action.cpp] Unknown task (3)"_s, u"2 [Scheduler.cpp] Action ignored"_s});

    STEP(At(MONDAY, {6, 0}), {u"gps.SetEnabled b true"_s});
    STEP(At(MONDAY, {6, 30}), {u"network.EnableLan bsss true   "_s});
    STEP(At(MONDAY, {7, 0}), {u"freq.SetFreq i 456"_s, u"light.SetIntensity u 80"_s, u"light.Switch b true"_s,
                              u"sound.SetAmplifiers y 3"_s, u"sound.SetMasterVolume d 60"_s});
    STEP(At(MONDAY, {7, 30}), {u"sound.PlayRadioFm -"_s, u"sound.RadioFmSetFrequency d 98.5"_s});
    STEP(At(MONDAY, {8, 30}), {u"sound.SetPlayerVolume sd file 70"_s, u"sound.PlayFile ss gong.mp3 08:30:00"_s});
    Device().Emit("sound.PlayFileCompleted", {u"gong.mp3"_s});
    STEP(At(MONDAY, {8, 45}), {});
    STEP(At(MONDAY, {8, 50}), {});
    STEP(At(MONDAY, {9, 0}), {u"sound.StopPlay ss radiofm "_s});
    STEP(At(MONDAY, {10, 0}),
         {u"sound.SetPlayerVolume sd playlist 50"_s, u"sound.PlayPlaylist ssusb morning p1 1 10:00:00 false"_s});
    STEP(At(MONDAY, {10, 0, 40}), {u"sound.StopPlay ss playlist p1"_s});
    Device().Emit("sound.PlayPlaylistCompleted", {u"morning"_s});
    STEP(At(MONDAY, {11, 0}), {});
    COMPARE_LINES(Client().WaitForSignals(1), {u"ExpectedPddAction(1,true)"_s});
    STEP(At(MONDAY, {12, 0}), {u"sound.PlayAux -"_s});
    STEP(At(MONDAY, {12, 30}), {u"sound.StopPlay ss aux "_s});
    STEP(At(MONDAY, {13, 0}),
         {u"sound.SetPlayerVolume sd stream 30"_s, u"sound.PlayStream su rtsp://10.0.0.5:8554/live 0"_s});
    STEP(At(MONDAY, {13, 30}), {u"sound.StopPlay ss stream "_s});
    Device().Emit("sound.StreamEnabled", {false});
    STEP(At(MONDAY, {14, 0}), {u"photo.EnableCamera b true"_s});
    STEP(At(MONDAY, {14, 1}), {u"photo.TakePhotoStream i 5"_s});
    Device().Emit("photo.PhotoTaken", {0, u"/photos/1.jpg"_s}, 2);
    m_expected += u"photo.StopPhotoStream -"_s;
    STEP(At(MONDAY, {15, 0}), {u"sound.StopPlay ss file "_s});
    STEP(At(MONDAY, {16, 0}), {u"sound.PlayFile ss anniversary.mp3 16:00:00"_s});
    Device().Emit("sound.PlayFileCompleted", {u"anniversary.mp3"_s});
    STEP(At(MONDAY, {16, 30}), {});
    STEP(At(MONDAY, {18, 0}), {u"light.Switch b false"_s, u"network.DisableLan -"_s});
    STEP(At(MONDAY, {18, 30}), {});

    // The next day begins anew, but for what belongs to one date.
    STEP(At(MONDAY.addDays(1), {8, 30}),
         {u"sound.SetPlayerVolume sd file 70"_s, u"sound.PlayFile ss gong.mp3 08:30:00"_s});
    Device().Emit("sound.PlayFileCompleted", {u"gong.mp3"_s});
    STEP(At(MONDAY.addDays(1), {16, 0}), {});
    STEP(At(MONDAY.addDays(1), {16, 30}), {u"sound.PlayFile ss a-day-late.mp3 16:30:00"_s});
    Device().Emit("sound.PlayFileCompleted", {u"a-day-late.mp3"_s});
    // A message that has not been heard to end would be stopped.
    QVERIFY(Daemon().WaitForLog(u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: a-day-late.mp3"_s));
    // What the clock was put forward over on that day.
    QStringList missed;
    for (const char* start :
         {"11 (Gps), line 3, due at 06:00:00", "12 (Lan), line 4, due at 06:30:00",
          "9 (SetCpuFreq), line 5, due at 07:00:00", "0 (Light), line 6, due at 07:00:00",
          "8 (Amplifiers), line 7, due at 07:00:00", "5 (Volume), line 8, due at 07:00:00",
          "6 (PlayRadioFm), line 9, due at 07:30:00", "15 (StopRadioFm), line 13, due at 09:00:00",
          "2 (PlayPlaylist), line 14, due at 10:00:00", "13 (StopPlaylist), line 15, due at 10:00:40",
          "19 (RequestPddAction), line 16, due at 11:00:00", "18 (EnableAux), line 17, due at 12:00:00",
          "18 (EnableAux), line 18, due at 12:30:00", "16 (PlayStream), line 19, due at 13:00:00",
          "17 (Stoptream), line 20, due at 13:30:00", "10 (Camera), line 21, due at 14:00:00",
          "4 (RecordPhoto), line 22, due at 14:01:00", "14 (StopMessage), line 23, due at 15:00:00"})
        missed += u"2 [MissedStarts.cpp] MISSED action: %1: the clock was put forward"_s.arg(QLatin1String(start));
    COMPARE_LINES(Daemon().Take(2), missed);
    QCOMPARE(StopDaemon(), 0);
    COMPARE_LINES(Device().Calls(), m_expected);
}

OZNA_CASE(Day, Day)
#include "tst_Day.moc"
