#include "Action.h"
#include "ActionLine.h"
#include "KindTable.h"
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

} // namespace

// Lines of whose task and parameters nothing can be made.
class TaskRejectionTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALineIsRejected_data();
    void ALineIsRejected();
    void ALineWithoutAPlaylistIsRejected_data();
    void ALineWithoutAPlaylistIsRejected();
    void ARejectedLineLeavesTheOthers();
};

void TaskRejectionTest::ALineIsRejected_data()
{
    QList<Rows<QByteArray>::Entry> rows;
    const auto add = [&rows](const QByteArray& task, const QByteArrayList& parameters, const QByteArray& reason) {
        for (const QByteArray& text : parameters)
            rows.append({task + text, reason});
    };
    for (const KindRow& kind : AllKinds())
    {
        const QByteArray number = QByteArray::number(kind.number);
        const QByteArray reason = "Wrong task parameters (" + QByteArray(kind.logName) + ")";
        for (const QByteArray& task : {QByteArray(kind.name), number})
        {
            if (*kind.className == '\0')
                add(task, {"", "|1", "|1,2", "|1,2,3", "|1,2,3,4"}, "Unknown task (" + number + ")");
            else if (kind.fewest > 0 && !task.isEmpty())
                add(task, {"", "|", "| ", "|1|x"}, reason); // ten fields lose the parameters
            if (kind.most == 1)
                add(task, {"|1,2", "|1,2,3", "|1,2,3,4", "|1,,", "|,1"}, reason);
            else if (kind.most == 2 && !task.isEmpty())
                add(task, {"|1", "|1,", "|1,1,1", "|1,1,1,1", "|1,1|x"}, reason);
        }
    }
    add("EnableAux", {"", "|1", "|1,2", "|1,2,3", "|1,2,3,4"}, "Unknown task (99)");
    Rows<QByteArray>::Add(rows);
}

void TaskRejectionTest::ALineIsRejected()
{
    const QByteArray& reason = Rows<QByteArray>::Current();
    const std::optional<Rejection> rejection = RejectionOf(QString::fromLatin1(QTest::currentDataTag()));
    EXPECT_LOG(4, {"1 [Action.cpp] " + reason});
    QVERIFY(rejection);
    QCOMPARE(rejection->GetCause(),
             reason.startsWith("Unknown") ? Rejection::Cause::TASK : Rejection::Cause::PARAMETERS);
    QCOMPARE(rejection->Reason().toUtf8(), reason);
    EXPECT_REQUESTS(Bus(), {});
}

void TaskRejectionTest::ALineWithoutAPlaylistIsRejected_data()
{
    const LogLine noName("1 [tasks/PlayPlaylist.cpp] Playlist name not specified", FILE_ORIGIN);
    const LogLine noVolume("2 [tasks/PlayPlaylist.cpp] Invalid volume=loud, not used");
    Rows<QString, Rejection::Cause, LogLines>::Add({
        {"an empty name", u",80,id"_s, Rejection::Cause::PLAYLIST_FILE, {noName, Failed()}},
        {"no tracks", u"empty,80,id"_s, Rejection::Cause::PLAYLIST_EMPTY, {Empty(), Failed()}},
        {"no volume either", u"empty,loud"_s, Rejection::Cause::PLAYLIST_EMPTY, {noVolume, Empty(), Failed()}},
    });
}

void TaskRejectionTest::ALineWithoutAPlaylistIsRejected()
{
    const auto& [parameters, cause, log] = Rows<QString, Rejection::Cause, LogLines>::Current();
    Data().WritePlaylist("# no tracks\n", u"empty"_s);
    const std::optional<Rejection> rejection = RejectionOf(u"PlayPlaylist|"_s + parameters);
    EXPECT_LOG(4, (log));
    QVERIFY(rejection);
    QCOMPARE(rejection->GetCause(), cause);
    QVERIFY(rejection->Reason().endsWith(u"TASK CREATION FAILED"_s));
}

void TaskRejectionTest::ARejectedLineLeavesTheOthers()
{
    Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s);
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
                   NotOpened(path), Failed(), "2 [Scheduler.cpp] Action ignored", "1 [Action.cpp] Unknown task (3)",
                   "2 [Scheduler.cpp] Action ignored", Loaded(2), Created("xmas at 08:30:00 (92 s, vol=-1)"),
                   "1 [Action.cpp] Wrong task parameters (Volume)", "2 [Scheduler.cpp] Action ignored",
                   "4 [tasks/StopPlaylist.cpp] TASK CREATED | StopPlaylist: id=",
                   "4 [Scheduler.cpp] Schedule loaded (2 tasks)", "4 [Scheduler.cpp] Finding ready actions...",
                   "4 [Scheduler.cpp] Schedule started"});
}

OZNA_CASE(TaskRejection, TaskRejectionTest)
#include "tst_TaskRejection.moc"
