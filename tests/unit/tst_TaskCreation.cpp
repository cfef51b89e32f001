#include "Action.h"
#include "ActionLine.h"
#include "KindTable.h"
#include "PlaylistLines.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A task of a line: the task, what is told of its creation, its identifier, and warnings.
using Made = Rows<QString, QString, QString, QStringList>;

const KindRow& KindOf(const QString& task)
{
    const QString name = task.section(u'|', 0, 0);
    for (const KindRow& kind : AllKinds())
    {
        if (name == QLatin1StringView(kind.name))
            return kind;
    }
    return FindKind(name.toInt());
}

QString Filled(const char* with, const QByteArray& value)
{
    return QString::fromLatin1(with).replace(u"{1}"_s, QString::fromUtf8(value));
}

} // namespace

// What a line's task and parameters make, kind by kind.
class TaskCreationTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AParameterIsRead_data();
    void AParameterIsRead() { ALineMakesItsTask(); }
    void AKindTakesItsFirstParameter_data();
    void AKindTakesItsFirstParameter() { ALineMakesItsTask(); }
    void ALineMakesItsTask_data();
    void ALineMakesItsTask();

private:
    void Begin() override { Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s); }
};

void TaskCreationTest::AParameterIsRead_data()
{
    QList<Made::Entry> rows;
    for (const Reading& reading : AllReadings())
    {
        const auto add = [&](const QByteArray& text, const char* shown, bool isRead) {
            const QString task = Filled(reading.task, text);
            const QString warning = isRead ? QString() : Filled(reading.warning, text);
            rows.append({task.toUtf8(),
                         task,
                         Filled(reading.created, shown),
                         {},
                         warning.isEmpty() ? QStringList() : QStringList{warning}});
        };
        for (const auto& [text, shown] : reading.texts->read)
            add(text, shown, true);
        for (const QByteArray& text : reading.texts->unread)
            add(text, reading.fallback, false);
    }
    Made::Add(rows);
}

// Whatever follows it.
void TaskCreationTest::AKindTakesItsFirstParameter_data()
{
    QList<Made::Entry> rows;
    for (const Reading& reading : AllReadings())
    {
        const QString name = QString::fromLatin1(reading.task).section(u'|', 0, 0);
        const KindRow& kind = KindOf(name);
        if (name + u"|{1},"_s != QLatin1StringView(reading.task) || kind.most != -1)
            continue;
        const auto& read = reading.texts->read;
        const auto one = std::ranges::find_if(read, [](const auto& text) { return text.first == "1"_ba; });
        const QString created = Filled(reading.created, one != read.end() ? one->second : reading.fallback);
        const QStringList warnings = one != read.end() ? QStringList() : QStringList{Filled(reading.warning, "1")};
        for (const QString& written : {name, QString::number(kind.number)})
        {
            for (const QString& parameters : {u"|1"_s, u"|1,2"_s, u"|1,2,3"_s, u"|1,2,3,4"_s, u"| 1 "_s, u"|1,"_s})
                rows.append({(written + parameters).toUtf8(), written + parameters, created, {}, warnings});
        }
    }
    Made::Add(rows);
}

void TaskCreationTest::ALineMakesItsTask_data()
{
    QList<Made::Entry> rows;
    const auto row = [&rows](const char* task, const QByteArray& created, const char* identifier = "",
                             const QStringList& warnings = {}) {
        rows.append(
            {task, QString::fromUtf8(task), QString::fromUtf8(created), QString::fromUtf8(identifier), warnings});
    };
    row("Camera|,1", "Camera: 0");
    for (const char* const task : {"enableAux|1", "18|1"})
        row(task, "EnableAux(1)");
    row("19| 1 , 1 ", "RequestPddAction(STREAM_MIC, 1)");
    row("19|mic,,", "RequestPddAction(UNKNOWN, 0)", "",
        {u"Can't parse RequestPddAction action from parameters: 'mic'. Using action=NONE."_s,
         u"Can't parse RequestPddAction enable from parameters: ''. Using enable=FALSE."_s});

    for (const char* const parameters : {"", "|", "|1", "|1,2,3,4", "|1|2"})
    {
        for (const int number : {14, 15, 17})
        {
            const KindRow& kind = FindKind(number);
            for (const QByteArray& name : {QByteArray(kind.name), QByteArray::number(number)})
                row((name + parameters).constData(), kind.className);
        }
    }
    for (const char* const id : {"xmas", "a b", "%s", "No\xc3\xabl"})
        row(("StopPlaylist|"_ba + id).constData(), "StopPlaylist: id="_ba + id, id);
    row("StopPlaylist", "StopPlaylist: id=");
    row("StopPlaylist|id,b,c,d", "StopPlaylist: id=id", "id");
    row("13| id ", "StopPlaylist: id=id", "id");
    row("StopPlaylist|,id", "StopPlaylist: id=");
    row("StopPlaylist|id|x", "StopPlaylist: id="); // ten fields lose the parameters

    for (const char* const task : {"RecordPhoto", "RecordPhoto|", "4", "RecordPhoto|10,3|x"})
        row(task, "Photo: interval=0 s, numPhoto=1");
    for (const char* const task : {"RecordPhoto| 10 , 3 ", "4|10,3,5,7"})
        row(task, "Photo: interval=10 s, numPhoto=3");
    row("RecordPhoto|x , 3,5", "Photo: interval=0 s, numPhoto=3", "",
        {u"Can't parse Photo interval from parameters: 'x , 3,5'. Using 0."_s});
    // A field that is missing is no number.
    const QString noInterval = u"Can't parse Photo interval from parameters: '%1'. Using 0."_s;
    const QString noNumber = u"Can't parse Photo number from parameters: '%1'. Using 1."_s;
    row("RecordPhoto|10", "Photo: interval=10 s, numPhoto=1", "", {noNumber.arg(u"10"_s)});
    for (const char* const text : {"x", "x,y", ",", "%s,%n", "10;3"})
        row(("RecordPhoto|"_ba + text).constData(), "Photo: interval=0 s, numPhoto=1", "",
            {noInterval.arg(QString::fromLatin1(text)), noNumber.arg(QString::fromLatin1(text))});

    row("PlayMessage|a", "PlayMessage: a @ 08:30:00 (vol=-1)");
    row("PlayMessage|a,", "PlayMessage: a @ 08:30:00 (vol=-1)");
    row("1| a , 5 ", "PlayMessage: a @ 08:30:00 (vol=5)");
    row("PlayMessage|,5", "PlayMessage:  @ 08:30:00 (vol=5)");
    row("PlayMessage|100%s.mp3,70", "PlayMessage: 100%s.mp3 @ 08:30:00 (vol=70)");
    row("PlayMessage|caf\xc3\xa9.mp3,70", "PlayMessage: caf\xc3\xa9.mp3 @ 08:30:00 (vol=70)");
    row("PlayStream|8554/live", "PlayStream: portAndPath=8554/live (vol=-1)");
    row("16|8554/live,70,c,d", "PlayStream: portAndPath=8554/live (vol=70)");
    row("PlayStream|,70", "PlayStream: portAndPath= (vol=70)");
    row("PlayStream|%s/No\xc3\xabl,70", "PlayStream: portAndPath=%s/No\xc3\xabl (vol=70)");
    const auto playlist = [&row](const char* task, const QByteArray& volume, const char* identifier) {
        row(task, "PlayPlaylist: xmas at 08:30:00 (92 s, vol=" + volume + ")", identifier);
    };
    playlist("PlayPlaylist|xmas", "-1", "");
    playlist("PlayPlaylist|xmas,80,id", "80", "id");
    playlist("2|xmas,80,id,d", "80", "id");
    playlist("PlayPlaylist| xmas , 80 , id ", "80", "id");
    Made::Add(rows);
}

void TaskCreationTest::ALineMakesItsTask()
{
    const auto& [line, created, identifier, warnings] = Made::Current();
    const KindRow& kind = KindOf(line);
    const Action action(ActionLine{.task = line}.Text());
    const Task& task = *action.m_task;
    const QString place = u" [tasks/%1.cpp] "_s.arg(QLatin1StringView(kind.className));
    LogLines log;
    for (const QString& warning : warnings)
        log.append(LogLine(u'2' + place + warning));
    if (task.m_type == TASK_PLAY_PLAYLIST)
        log.append(PlaylistLines::Loaded(2));
    log.append(LogLine(u'4' + place + u"TASK CREATED | "_s + created));
    // Nothing more is told of a new task, but of a playlist's file.
    const QList<LogRecord> records = LogRecorder::Records();
    QVERIFY(task.m_type == TASK_PLAY_PLAYLIST || std::ranges::none_of(records, [](const LogRecord& record) {
                return record.level > 4 && record.text.startsWith("[tasks/");
            }));
    EXPECT_LOG(4, (log));
    EXPECT_REQUESTS(Bus(), {});
    QStringList told;
    for (const TaskWarning& warning : task.Warnings())
    {
        QVERIFY(warning.parameter >= 0);
        told.append(warning.text);
    }
    QCOMPARE(told, warnings);
    QCOMPARE(static_cast<int>(task.m_type), kind.number);
    QCOMPARE(task.GetName(), QLatin1StringView(kind.logName));
    QCOMPARE(task.m_identifier, identifier);
    // A kind without a class of its own by the object system shares that of its base.
    const QByteArray className = task.metaObject()->className();
    QVERIFY(className == kind.className || className == "Task");
    QCOMPARE(task.parent(), nullptr);
    QCOMPARE(task.IsRunning(), false);
    QCOMPARE(task.GetDelayable_s(), task.m_type == TASK_PLAY_PLAYLIST ? 62U : 0U);
}

OZNA_CASE(TaskCreation, TaskCreationTest)
#include "tst_TaskCreation.moc"
