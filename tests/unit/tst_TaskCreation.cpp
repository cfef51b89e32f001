#include "Action.h"
#include "ActionLine.h"
#include "PlaylistLines.h"
#include "Rows.h"
#include "SchedulerTest.h"
#include "Suite.h"
#include "text/Rejection.h"

#include <optional>

using namespace Qt::StringLiterals;
using namespace PlaylistLines;

namespace
{

const QByteArray PLAYLIST = "track1.mp3;60\ntrack2.mp3;30\n"_ba;

// Why no action can be made of a line with that task; none where one can.
std::optional<Rejection> RejectionOf(const QString& task)
{
    try
    {
        const Action action(ActionLine{.task = task}.Text());
        return std::nullopt;
    }
    catch (const Rejection& rejection)
    {
        return rejection;
    }
}

// As the records of level 2 begin.
QStringList WarningsOf(const LogLines& log)
{
    QStringList warnings;
    for (const LogLine& line : log)
    {
        if (line.shown.startsWith(u"2 "_s))
            warnings.append(line.shown.section(u"] "_s, 1));
    }
    return warnings;
}

} // namespace

// What a line's task and parameters make, kind by kind.
class TaskCreationTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALineMakesItsTask_data();
    void ALineMakesItsTask();
    void ALineIsRejected_data();
    void ALineIsRejected();
    void ALineWithoutAPlaylistIsRejected_data();
    void ALineWithoutAPlaylistIsRejected();
    void ARejectedLineLeavesTheOthers();

private:
    void Begin() override { Data().WritePlaylist(PLAYLIST, u"xmas"_s); }
};

void TaskCreationTest::ALineMakesItsTask_data()
{
    QTest::addColumn<QString>("task");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QByteArray>("className");
    QTest::addColumn<LogLines>("log");

    // A kind without a class of its own by the object system shares that of its base.
    const auto row = [](const char* task, const char* name, const char* className, const char* file,
                        const LogLines& before, const QByteArray& text, const char* identifier = "") {
        QTest::newRow(task) << QString::fromLatin1(task) << QString::fromLatin1(name) << QString::fromLatin1(identifier)
                            << QByteArray(className)
                            << before + LogLines{QByteArray("4 [tasks/") + file + ".cpp] TASK CREATED | " + text};
    };
    // The first parameter counts, up to four and more.
    const auto firsts = [&row](const char* task, const char* number, const char* name, const char* className,
                               const char* file, const QByteArray& text, const LogLines& before = {}) {
        for (const char* const kind : {task, number})
        {
            for (const char* const parameters : {"|1", "|1,2", "|1,2,3", "|1,2,3,4", "| 1 ", "|1,"})
                row((QByteArray(kind) + parameters).constData(), name, className, file, before, text);
        }
    };
    firsts("Light", "0", "Light", "Task", "Light", "Light: 1");
    firsts("Volume", "5", "Volume", "Task", "Volume", "Volume: 1");
    firsts("PlayRadioFm", "6", "PlayRadioFm", "PlayRadioFm", "PlayRadioFm", "PlayRadioFm: 1.00");
    firsts("Amplifiers", "8", "Amplifiers", "Task", "Amplifiers", "Amplifiers: 1");
    firsts("SetCpuFreq", "9", "SetCpuFreq", "Task", "CpuFreq", "CpuFreq: 456",
           {"2 [tasks/CpuFreq.cpp] Can't parse Cpu frequency from parameters: '1'. Using 456."});
    firsts("Camera", "10", "Camera", "Task", "Camera", "Camera: 1");
    firsts("Gps", "11", "Gps", "Task", "Gps", "Gps: 1");
    firsts("Lan", "12", "Lan", "Lan", "Lan", "Lan: 1");
    row("SetCpuFreq|,", "SetCpuFreq", "Task", "CpuFreq",
        {"2 [tasks/CpuFreq.cpp] Can't parse Cpu frequency from parameters: ''. Using 456."}, "CpuFreq: 456");
    row("Camera|,1", "Camera", "Task", "Camera", {}, "Camera: 0");

    for (const char* const task : {"enableAux|1", "18|1", "enableAux|1,"})
        row(task, "EnableAux", "EnableAux", "EnableAux", {}, "EnableAux(1)");
    for (const char* const task : {"19|1,1", "19| 1 , 1 ", "19|1,1,"})
        row(task, "RequestPddAction", "RequestPddAction", "RequestPddAction", {}, "RequestPddAction(STREAM_MIC, 1)");

    for (const char* const parameters : {"", "|", "|1", "|1,2,3,4", "|1|2"})
    {
        const auto stop = [&](const char* task, const char* name, const char* kind) {
            row((QByteArray(task) + parameters).constData(), name, kind, kind, {}, kind);
        };
        stop("StopMessage", "StopMessage", "StopMessage");
        stop("14", "StopMessage", "StopMessage");
        stop("StopRadioFm", "StopRadioFm", "StopRadioFm");
        stop("15", "StopRadioFm", "StopRadioFm");
        stop("StopStream", "Stoptream", "StopStream");
        stop("17", "Stoptream", "StopStream");
    }
    const auto stopPlaylist = [&row](const char* task, const char* identifier) {
        row(task, "StopPlaylist", "StopPlaylist", "StopPlaylist", {}, "StopPlaylist: id=" + QByteArray(identifier),
            identifier);
    };
    stopPlaylist("StopPlaylist", "");
    stopPlaylist("StopPlaylist|id", "id");
    stopPlaylist("StopPlaylist|id,b,c,d", "id");
    stopPlaylist("13| id ", "id");
    stopPlaylist("StopPlaylist|,id", "");
    stopPlaylist("StopPlaylist|id|x", ""); // ten fields lose the parameters

    const auto photo = [&row](const char* task, const char* text, const LogLines& before = {}) {
        row(task, "RecordPhoto", "Photo", "Photo", before, "Photo: " + QByteArray(text));
    };
    photo("RecordPhoto", "interval=0 s, numPhoto=1");
    photo("RecordPhoto|", "interval=0 s, numPhoto=1");
    photo("4", "interval=0 s, numPhoto=1");
    photo("RecordPhoto|10", "interval=10 s, numPhoto=1",
          {"2 [tasks/Photo.cpp] Can't parse Photo number from parameters: '10'. Using 1."});
    photo("RecordPhoto|10,3", "interval=10 s, numPhoto=3");
    photo("4|10,3,5,7", "interval=10 s, numPhoto=3");
    photo("RecordPhoto|x , 3,5", "interval=0 s, numPhoto=3",
          {"2 [tasks/Photo.cpp] Can't parse Photo interval from parameters: 'x , 3,5'. Using 0."});
    photo("RecordPhoto|10,3|x", "interval=0 s, numPhoto=1");

    const auto stream = [&row](const char* task, const char* text, const LogLines& before = {}) {
        row(task, "PlayStream", "PlayStream", "PlayStream", before, "PlayStream: portAndPath=" + QByteArray(text));
    };
    stream("PlayStream|8554/live", "8554/live (vol=-1)");
    stream("PlayStream|8554/live,70", "8554/live (vol=70)");
    stream("PlayStream|8554/live,70,c", "8554/live (vol=70)");
    stream("16|8554/live,70,c,d", "8554/live (vol=70)");
    stream("PlayStream|,70", " (vol=70)");
    stream("PlayStream|a,b", "a (vol=-1)", {"2 [tasks/PlayStream.cpp] Invalid volume=b, not used"});
    stream("PlayStream|a,,", "a (vol=-1)", {"2 [tasks/PlayStream.cpp] Invalid volume=, not used"});

    const auto playlist = [&row](const char* task, const char* volume, const char* identifier,
                                 const LogLines& before = {}) {
        row(task, "PlayPlaylist", "PlayPlaylist", "PlayPlaylist", before + LogLines{Loaded(2)},
            "PlayPlaylist: xmas at 08:30:00 (92 s, vol=" + QByteArray(volume) + ")", identifier);
    };
    playlist("PlayPlaylist|xmas", "-1", "");
    playlist("PlayPlaylist|xmas,80", "80", "");
    playlist("PlayPlaylist|xmas,80,id", "80", "id");
    playlist("2|xmas,80,id,d", "80", "id");
    playlist("PlayPlaylist| xmas , 80 , id ", "80", "id");
    playlist("PlayPlaylist|xmas,b,id", "-1", "id", {"2 [tasks/PlayPlaylist.cpp] Invalid volume=b, not used"});
    playlist("PlayPlaylist|xmas,,id", "-1", "id", {"2 [tasks/PlayPlaylist.cpp] Invalid volume=, not used"});
}

void TaskCreationTest::ALineMakesItsTask()
{
    QFETCH(QString, task);
    QFETCH(QString, name);
    QFETCH(QString, identifier);
    QFETCH(QByteArray, className);
    QFETCH(LogLines, log);
    const Action action(ActionLine{.task = task}.Text());
    EXPECT_LOG(4, (log));
    QStringList warnings;
    for (const TaskWarning& warning : action.m_task->Warnings())
    {
        QVERIFY(warning.parameter >= 0);
        warnings.append(warning.text);
    }
    QCOMPARE(warnings, WarningsOf(log));
    QCOMPARE(action.m_task->GetName(), name);
    QCOMPARE(action.m_task->m_identifier, identifier);
    QCOMPARE(QByteArray(action.m_task->metaObject()->className()), className);
    QCOMPARE(action.m_task->parent(), nullptr);
    QCOMPARE(action.m_task->IsRunning(), false);
    QCOMPARE(action.m_task->GetDelayable_s(), action.m_task->m_type == TASK_PLAY_PLAYLIST ? 62U : 0U);
    EXPECT_REQUESTS(Bus(), {});
}

void TaskCreationTest::ALineIsRejected_data()
{
    QTest::addColumn<QString>("task");
    QTest::addColumn<QByteArray>("reason");
    const auto row = [](const QByteArray& task, const QByteArray& reason) {
        QTest::newRow(task.constData()) << QString::fromLatin1(task) << reason;
    };
    const auto without = [&row](const QByteArray& task, const QByteArray& number, const QByteArray& name) {
        const QByteArray reason = "Wrong task parameters (" + name + ")";
        row(task, reason);
        row(task + "|", reason);
        row(task + "| ", reason);
        row(task + "|1|x", reason); // ten fields lose the parameters
        row(number, reason);
    };
    without("Light", "0", "Light");
    without("PlayPlaylist", "2", "PlayPlaylist");
    without("Volume", "5", "Volume");
    without("PlayRadioFm", "6", "PlayRadioFm");
    without("Amplifiers", "8", "Amplifiers");
    without("SetCpuFreq", "9", "SetCpuFreq");
    without("Camera", "10", "Camera");
    without("Gps", "11", "Gps");
    without("Lan", "12", "Lan");
    without("PlayStream", "16", "PlayStream");
    without("enableAux", "18", "EnableAux");
    for (const QByteArray parameters : {"1,2", "1,2,3", "1,2,3,4", "1,,", ",1"})
        row("enableAux|" + parameters, "Wrong task parameters (EnableAux)");
    for (const QByteArray parameters : {"", "|", "|1", "|1,", "|1,1,1", "|1,1,1,1", "|1,1|x"})
        row("19" + parameters, "Wrong task parameters (RequestPddAction)");
    for (const QByteArray parameters : {"", "|1", "|1,2", "|1,2,3", "|1,2,3,4"})
    {
        row("RecordMic" + parameters, "Unknown task (3)");
        row("3" + parameters, "Unknown task (3)");
        row("RecordVideo" + parameters, "Unknown task (7)");
        row("7" + parameters, "Unknown task (7)");
        row("EnableAux" + parameters, "Unknown task (99)");
    }
}

void TaskCreationTest::ALineIsRejected()
{
    QFETCH(QString, task);
    QFETCH(QByteArray, reason);
    const std::optional<Rejection> rejection = RejectionOf(task);
    EXPECT_LOG(4, {"1 [Action.cpp] " + reason});
    QVERIFY(rejection);
    QCOMPARE(rejection->GetCause(),
             reason.startsWith("Unknown") ? Rejection::Cause::TASK : Rejection::Cause::PARAMETERS);
    QCOMPARE(rejection->Reason().toUtf8(), reason);
    EXPECT_REQUESTS(Bus(), {});
}

void TaskCreationTest::ALineWithoutAPlaylistIsRejected_data()
{
    Rows<QString, Rejection::Cause, LogLines>::Add({
        {"an empty name",
         u",80,id"_s,
         Rejection::Cause::PLAYLIST_FILE,
         {{"1 [tasks/PlayPlaylist.cpp] Playlist name not specified", FILE_ORIGIN}, Failed()}},
        {"a playlist without tracks", u"empty,80,id"_s, Rejection::Cause::PLAYLIST_EMPTY, {Empty(), Failed()}},
        {"no volume either",
         u"empty,loud"_s,
         Rejection::Cause::PLAYLIST_EMPTY,
         {"2 [tasks/PlayPlaylist.cpp] Invalid volume=loud, not used", Empty(), Failed()}},
    });
}

void TaskCreationTest::ALineWithoutAPlaylistIsRejected()
{
    const auto& [parameters, cause, log] = Rows<QString, Rejection::Cause, LogLines>::Current();
    Data().WritePlaylist("# no tracks\n", u"empty"_s);
    const std::optional<Rejection> rejection = RejectionOf(u"PlayPlaylist|"_s + parameters);
    EXPECT_LOG(4, (log));
    QVERIFY(rejection);
    QCOMPARE(rejection->GetCause(), cause);
    QVERIFY(rejection->Reason().endsWith(u"TASK CREATION FAILED"_s));
}

void TaskCreationTest::ARejectedLineLeavesTheOthers()
{
    Data().WriteSchedule("1111111|08:30:00|*|*|*|||PlayPlaylist|missing\n"
                         "1111111|08:30:00|*|*|*|||RecordMic|1\n"
                         "1111111|08:30:00|*|*|*|||PlayPlaylist|xmas\n"
                         "1111111|08:30:00|*|*|*|||Volume\n"
                         "1111111|08:30:00|*|*|*|||StopPlaylist\n");
    Create();
    Engine().Start();
    const QByteArray path = Data().PlaylistPath(u"missing"_s).toUtf8();
    EXPECT_LOG(4, {"4 [Scheduler.cpp] Starting schedule...",
                   "4 [Scheduler.cpp] Loading schedule from " + Data().SchedulePath(u"schedule.csv"_s).toUtf8() + "...",
                   {"1 [tasks/PlayPlaylist.cpp] Playlist file open failed (path=" + path + ")", FILE_ORIGIN},
                   Failed(),
                   "2 [Scheduler.cpp] Action ignored",
                   "1 [Action.cpp] Unknown task (3)",
                   "2 [Scheduler.cpp] Action ignored",
                   Loaded(2),
                   Created("xmas at 08:30:00 (92 s, vol=-1)"),
                   "1 [Action.cpp] Wrong task parameters (Volume)",
                   "2 [Scheduler.cpp] Action ignored",
                   "4 [tasks/StopPlaylist.cpp] TASK CREATED | StopPlaylist: id=",
                   "4 [Scheduler.cpp] Schedule loaded (2 tasks)",
                   "4 [Scheduler.cpp] Finding ready actions...",
                   "4 [Scheduler.cpp] Schedule started"});
}

OZNA_CASE(TaskCreation, TaskCreationTest)
#include "tst_TaskCreation.moc"
