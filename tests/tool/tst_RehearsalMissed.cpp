#include "Suite.h"
#include "TimeZone.h"
#include "engine/Rehearsal.h"
#include "engine/Workspace.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint64 S_MS = 1000;
constexpr qint64 MINUTE_MS = 60 * S_MS;
constexpr qint64 HOUR_MS = 60 * MINUTE_MS;

qint64 Utc_ms(const char* text)
{
    return QDateTime::fromString(QString::fromLatin1(text) + u'Z', Qt::ISODate).toMSecsSinceEpoch();
}

} // namespace

// A rehearsal with what disturbs a daemon: when its requests come, and when what it misses was due. Each is run twice,
// also with every pass.
class RehearsalMissedTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ASilentPeerHoldsTheLoop();
    void AStepOfTheClockLoadsNothing();
    void ALoadStartsTheTimersAnew();
    void TheLastMillisecondIsPartOfTheWhole();
    void ATimeThatComesTwiceIsTheOneThatHasPassed();
    void ATimeBeforeAChangeOfTheClocksKeepsItsMoment();
    void ADayThatIsLeftOutMovesNoTime();

private:
    // The requests, as "<seconds since the start> line 1: soundmanager SetMasterVolume(1.0)", and then what is missed,
    // as "line 1 at <seconds since the start>: <cause>".
    static QStringList Run(const QByteArrayList& lines, const Rehearsal::Plan& plan);
};

QStringList RehearsalMissedTest::Run(const QByteArrayList& lines, const Rehearsal::Plan& plan)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"schedule.csv"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(lines.join('\n') + '\n') <= 0)
        qFatal("no schedule");
    file.close();
    const Workspace workspace(path, folder.path());
    QStringList first;
    for (const bool everyPass : {false, true})
    {
        Rehearsal::Plan both = plan;
        both.everyPass = everyPass;
        Rehearsal rehearsal(workspace, both);
        if (!rehearsal.Run())
            qFatal("not run to its end");
        const auto after = [&plan](qint64 moment_ms) {
            return QString::number(static_cast<double>(moment_ms - plan.start_ms) / S_MS, 'g', 12);
        };
        QStringList texts;
        for (const Event& event : rehearsal.Events())
        {
            for (const Request& request : event.requests)
                texts.append(
                    u"%1 line %2: %3"_s.arg(after(request.moment_ms)).arg(event.lineNumber).arg(request.Text()));
            if (event.kind == EventKind::MISSED)
                texts.append(u"line %1 at %2: %3"_s.arg(event.lineNumber).arg(after(event.due_ms), event.reason));
        }
        if (everyPass && texts != first)
            qWarning() << "with every pass:" << texts;
        first = everyPass && texts != first ? QStringList() : texts;
    }
    return first;
}

void RehearsalMissedTest::ASilentPeerHoldsTheLoop()
{
    const TimeZone here("UTC");
    const qint64 start_ms = Utc_ms("2024-05-15T07:59:00");
    Rehearsal::Plan plan{start_ms, start_ms, start_ms + 2 * MINUTE_MS};
    plan.silentPeers = {u"soundmanager"_s, u"photomanager"_s};
    QCOMPARE(Run({"1111111|08:00:00|*|*|*|||Volume|1", "1111111|08:00:01|*|*|*|||Camera|1",
                  "1111111|08:00:02|*|*|*|||Gps|1"},
                 plan),
             (QStringList{u"60 line 1: soundmanager SetMasterVolume(1.0)"_s,
                          u"line 3 at 62: the loop waited for "
                          u"com.kestrelix.ozna.photomanager"_s,
                          u"63 line 2: photomanager EnableCamera(true)"_s}));
}

void RehearsalMissedTest::AStepOfTheClockLoadsNothing()
{
    const TimeZone here("UTC");
    const qint64 start_ms = Utc_ms("2024-05-15T07:59:00");
    Rehearsal::Plan plan{start_ms, start_ms, start_ms + 2 * MINUTE_MS};
    plan.disturbances = {{65 * S_MS, 10 * S_MS}};
    // The message plays on, and nobody stops it.
    QCOMPARE(Run({"1111111|08:00:00|*|*|*|||PlayMessage|gong.mp3", "1111111|08:00:10|*|*|*|||Volume|1"}, plan),
             (QStringList{u"52 line 1: soundmanager PlayFile(\"gong.mp3\", \"08:00:00\")"_s,
                          u"line 2 at 70: the clock was put forward"_s}));
}

void RehearsalMissedTest::ALoadStartsTheTimersAnew()
{
    const TimeZone here("UTC");
    const qint64 start_ms = Utc_ms("2024-05-15T07:59:00");
    Rehearsal::Plan plan{start_ms, start_ms, start_ms + 2 * MINUTE_MS};
    plan.disturbances = {{1050, 0}};
    // What is in force comes with the first far pass, the start itself on its second.
    QCOMPARE(Run({"1111111|07:00:00|*|*|*|||PlayRadioFm|87.5", "1111111|08:00:00|*|*|*|||Volume|1"}, plan).mid(1),
             (QStringList{u"4.05 line 1: soundmanager RadioFmSetFrequency(87.5)"_s,
                          u"60 line 2: soundmanager SetMasterVolume(1.0)"_s}));
}

void RehearsalMissedTest::TheLastMillisecondIsPartOfTheWhole()
{
    const TimeZone here("UTC");
    const qint64 start_ms = Utc_ms("2024-05-15T23:59:00");
    const QByteArrayList lines{"1111111|00:00:00|*|*|*|||Volume|1"};
    const QStringList missed{u"line 1 at 60: its time cannot start: the daemon looks ahead within one day only"_s};
    QCOMPARE(Run(lines, {start_ms, start_ms, start_ms + MINUTE_MS + 1}), missed);
    QCOMPARE(Run(lines, {start_ms, start_ms, start_ms + MINUTE_MS}), QStringList());
}

void RehearsalMissedTest::ATimeThatComesTwiceIsTheOneThatHasPassed()
{
    const TimeZone here("Europe/Rome");
    // 02:20:00 for the second time.
    const qint64 start_ms = Utc_ms("2024-10-27T01:20:00");
    Rehearsal::Plan plan{start_ms, start_ms, start_ms + HOUR_MS};
    plan.disturbances = {{5 * MINUTE_MS, 10 * MINUTE_MS}};
    QCOMPARE(Run({"1111111|02:30:00|*|*|*|||Volume|1"}, plan),
             QStringList{u"line 1 at 600: the clock was put forward"_s});
}

void RehearsalMissedTest::ATimeBeforeAChangeOfTheClocksKeepsItsMoment()
{
    const TimeZone here("Europe/Rome");
    // From 01:40:00 to 02:40:00 for the second time: the clock is put forward by two hours.
    const qint64 start_ms = Utc_ms("2024-10-26T23:40:00");
    Rehearsal::Plan plan{start_ms, start_ms, start_ms + HOUR_MS};
    plan.disturbances = {{MINUTE_MS, 2 * HOUR_MS}};
    QCOMPARE(Run({"1111111|01:50:00|*|*|*|||Volume|1"}, plan),
             QStringList{u"line 1 at 600: the clock was put forward"_s});
}

void RehearsalMissedTest::ADayThatIsLeftOutMovesNoTime()
{
    const TimeZone here("Pacific/Apia");
    // Thursday, 2011-12-29, 23:50:00; the day after is Saturday, the 31st.
    const qint64 start_ms = Utc_ms("2011-12-30T09:50:00");
    Rehearsal::Plan plan{start_ms, start_ms, start_ms + HOUR_MS};
    plan.disturbances = {{MINUTE_MS, 15 * MINUTE_MS}};
    QCOMPARE(Run({"0001000|23:55:00|*|*|*|||Volume|1"}, plan),
             QStringList{u"line 1 at 300: the clock was put forward"_s});
}

OZNA_CASE(RehearsalMissed, RehearsalMissedTest)
#include "tst_RehearsalMissed.moc"
