#include "HeardTest.h"
#include "Suite.h"
#include "ear/Gong.h"

using namespace Qt::StringLiterals;

// The daemon and the player together: a schedule is heard.
class HeardDaemon : public HeardTest
{
    Q_OBJECT
private Q_SLOTS:
    void AMessageOfTheScheduleIsHeardAtItsSecond();
    void APlaylistIsJoinedLateAtTheRightTrack();
    void AStopBeforeAMessageIsHeardOnce();

protected:
    void Begin() override;

private:
    // Starts both at that time of day.
    [[nodiscard]] bool Start(const QByteArray& schedule, const QTime& time);
    // When the sound began by the daemon's clock, in milliseconds of the day.
    [[nodiscard]] double DayTime_ms(const Ear::Heard& sound) const;

    std::unique_ptr<DaemonProcess> m_scheduler;
    std::unique_ptr<FakeTime> m_time;
};

namespace
{

const QDate MONDAY{2024, 1, 15};

} // namespace

void HeardDaemon::Begin()
{
    m_time = std::make_unique<FakeTime>();
    m_time->Apply(Player().Environment());
    m_scheduler = std::make_unique<DaemonProcess>();
    QProcessEnvironment& environment = m_scheduler->Environment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, Bus().Address());
    environment.insert(u"OZNA_DATA_DIR"_s, Path(QString()));
    m_time->Apply(environment);
}

bool HeardDaemon::Start(const QByteArray& schedule, const QTime& time)
{
    if (!QDir(Path(QString())).mkdir(u"schedule"_s))
        return false;
    WriteFile(Path(u"schedule/schedule.csv"_s), schedule);
    m_time->Set(MONDAY, time);
    if (!StartPlayer())
        return false;
    m_scheduler->Start();
    return m_scheduler->WaitForLog(u"4 [Scheduler.cpp] Schedule started"_s);
}

double HeardDaemon::DayTime_ms(const Ear::Heard& sound) const
{
    const qint64 shift_ms = QDateTime::currentDateTimeUtc().msecsTo(m_time->Now());
    return sound.at_ms + static_cast<double>(shift_ms - MONDAY.startOfDay(Qt::UTC).toMSecsSinceEpoch());
}

void HeardDaemon::AMessageOfTheScheduleIsHeardAtItsSecond()
{
    WriteSound(u"gong.wav"_s, Gong::Samples());
    QVERIFY(Start("1111100|08:30:00|*|*|*|||PlayMessage|gong.wav,70\n", {8, 29, 49}));
    QVERIFY(WaitForSounds(1));
    const double error_ms = DayTime_ms(Hearing().Sounds()[0]) - QTime(8, 30).msecsSinceStartOfDay();
    QVERIFY2(qAbs(error_ms) < EXACT_MS, qPrintable(QString::number(error_ms)));
    QVERIFY(m_scheduler->WaitForLog(u"4 [tasks/PlayMessage.cpp] TASK COMPLETED | PlayMessage: gong.wav"_s));
    QCOMPARE(m_scheduler->Take(2), QStringList());
}

void HeardDaemon::APlaylistIsJoinedLateAtTheRightTrack()
{
    // The list says 10 s each; what is heard is shorter, and longer from track to track.
    QByteArray lines;
    for (int i = 1; i <= 4; ++i)
    {
        WriteSound(u"track%1.wav"_s.arg(i), MediaFiles::Block(i * 9600));
        lines += "track" + QByteArray::number(i) + ".wav;10\n";
    }
    WritePlaylist(u"morning"_s, lines);
    // 20 s late, the second track would be playing since 12 s: the third is the next one.
    QVERIFY(Start("1111100|09:00:00|*|*|*|||PlayPlaylist|morning,100,p1\n", {9, 0, 16}));
    QVERIFY(WaitForSounds(2));
    QVERIFY(m_scheduler->WaitForLog(u"4 [tasks/PlayPlaylist.cpp] TASK COMPLETED | PlayPlaylist: morning"_s));
    const std::vector<Ear::Heard> sounds = Hearing().Sounds();
    QCOMPARE(sounds.size(), size_t{2});
    QCOMPARE(sounds[0].end - sounds[0].begin, qint64{3 * 9600});
    QCOMPARE(sounds[1].end - sounds[1].begin, qint64{4 * 9600});
    QCOMPARE(sounds[1].begin - sounds[0].end, qint64{96'000});
    // The one warning is that it is late.
    const QStringList warnings = m_scheduler->Take(2);
    QVERIFY2(warnings.size() == 1 && warnings[0].contains(u"IsDelayed but still valid"_s),
             qPrintable(warnings.join(u'\n')));
}

void HeardDaemon::AStopBeforeAMessageIsHeardOnce()
{
    WriteSound(u"gong.wav"_s, Gong::Samples(500));
    QVERIFY(
        Start("1111100|08:30:00|*|*|*|||PlayMessage|gong.wav\n1111100|08:29:56|*|*|*|||StopMessage|\n", {8, 29, 48}));
    QVERIFY(WaitForSounds(1));
    const double error_ms = DayTime_ms(Hearing().Sounds()[0]) - QTime(8, 30).msecsSinceStartOfDay();
    QVERIFY2(qAbs(error_ms) < EXACT_MS, qPrintable(QString::number(error_ms)));
    Pause(2000);
    QCOMPARE(Hearing().Sounds().size(), size_t{1});
    QCOMPARE(m_scheduler->Take(2), QStringList());
}

OZNA_CASE(HeardDaemon, HeardDaemon)
#include "tst_HeardDaemon.moc"
