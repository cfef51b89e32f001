#include "FakeTask.h"
#include "Suite.h"
#include "TaskTable.h"
#include "UnitTest.h"

using namespace Qt::StringLiterals;

namespace
{

// A task that overrides only what it must.
class BareTask final : public Task
{
public:
    BareTask()
        : Task(TASK_VOLUME, u"identifier"_s)
    {
    }
    bool Run() override { return true; }
};

} // namespace

class TaskTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AScheduleNameGivesAType_data();
    void AScheduleNameGivesAType();
    void ATypeGivesALogName_data();
    void ATypeGivesALogName();
    void TheTableTakesParametersByTheirNumber_data();
    void TheTableTakesParametersByTheirNumber();
    void PddActionsHaveTheirNumbers();
    void ATaskKeepsWhatItIsMadeWith();
    void TheBaseToleratesEverything();
    void TheBaseIsRunningWhileItsFlagIsSet();
    void TheBaseTakesWhatItDoesNotUse();
};

void TaskTest::AScheduleNameGivesAType_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("type");
    const auto row = [](const QString& name, int type) {
        QTest::addRow("\"%s\" is %d", name.toUtf8().constData(), type) << name << type;
    };
    row(u"Light"_s, 0);
    row(u"PlayMessage"_s, 1);
    row(u"PlayPlaylist"_s, 2);
    row(u"RecordMic"_s, 3);
    row(u"RecordPhoto"_s, 4);
    row(u"Volume"_s, 5);
    row(u"PlayRadioFm"_s, 6);
    row(u"RecordVideo"_s, 7);
    row(u"Amplifiers"_s, 8);
    row(u"SetCpuFreq"_s, 9);
    row(u"Camera"_s, 10);
    row(u"Gps"_s, 11);
    row(u"Lan"_s, 12);
    row(u"StopPlaylist"_s, 13);
    row(u"StopMessage"_s, 14);
    row(u"StopRadioFm"_s, 15);
    row(u"PlayStream"_s, 16);
    row(u"StopStream"_s, 17);
    row(u"enableAux"_s, 18);
    // Spellings that only the log has, or nobody.
    row(u"Stoptream"_s, 99);
    row(u"EnableAux"_s, 99);
    row(u"RequestPddAction"_s, 99);
    row(u"light"_s, 99);
    row(u"LIGHT"_s, 99);
    row(u"stopStream"_s, 99);
    row(u"Light "_s, 99);
    row(u" Light"_s, 99);
    row(u"Ligh"_s, 99);
    row(u"Lights"_s, 99);
    row(u"unknown"_s, 99);
    row(u""_s, 99);
    row(u"-"_s, 99);
    // A number is taken as it stands, known or not.
    for (int type = 0; type <= 20; ++type)
        row(QString::number(type), type);
    row(u"42"_s, 42);
    row(u"98"_s, 98);
    row(u"99"_s, 99);
    row(u"100"_s, 100);
    row(u"-1"_s, -1);
    row(u"019"_s, 19);
    row(u"+5"_s, 5);
    row(u"2147483647"_s, std::numeric_limits<int>::max());
    row(u"-2147483648"_s, std::numeric_limits<int>::min());
    row(u"2147483648"_s, 99);
    row(u"99999999999999999999"_s, 99);
    row(u"1.0"_s, 99);
    row(u"0x01"_s, 99);
    row(u"1e1"_s, 99);
    row(u"1 2"_s, 99);
    row(u"\uff11"_s, 99); // a wide digit
}

void TaskTest::AScheduleNameGivesAType()
{
    QFETCH(QString, name);
    QFETCH(int, type);
    QCOMPARE(static_cast<int>(Task::NameToType(name)), type);
}

void TaskTest::ATypeGivesALogName_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("name");
    const auto row = [](int type, const char* name) {
        QTest::addRow("%d is %s", type, name) << type << QString::fromLatin1(name);
    };
    row(0, "Light");
    row(1, "PlayMessage");
    row(2, "PlayPlaylist");
    row(3, "RecordMic");
    row(4, "RecordPhoto");
    row(5, "Volume");
    row(6, "PlayRadioFm");
    row(7, "RecordVideo");
    row(8, "Amplifiers");
    row(9, "SetCpuFreq");
    row(10, "Camera");
    row(11, "Gps");
    row(12, "Lan");
    row(13, "StopPlaylist");
    row(14, "StopMessage");
    row(15, "StopRadioFm");
    row(16, "PlayStream");
    row(17, "Stoptream");
    row(18, "EnableAux");
    row(19, "RequestPddAction");
    row(20, "unknown");
    row(98, "unknown");
    row(99, "unknown");
    row(100, "unknown");
    row(-1, "unknown");
    row(std::numeric_limits<int>::max(), "unknown");
    row(std::numeric_limits<int>::min(), "unknown");
}

void TaskTest::ATypeGivesALogName()
{
    QFETCH(int, type);
    QFETCH(QString, name);
    QCOMPARE(FakeTask(static_cast<TaskType>(type)).GetName(), name);
}

void TaskTest::TheTableTakesParametersByTheirNumber_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("fewest");
    QTest::addColumn<int>("most"); // -1: any number
    const auto row = [](const char* name, TaskType type, int fewest, int most) {
        QTest::newRow(name) << static_cast<int>(type) << fewest << most;
    };
    row("Light", TASK_LIGHT, 1, -1);
    row("PlayMessage", TASK_PLAY_MESSAGE, 1, -1);
    row("PlayPlaylist", TASK_PLAY_PLAYLIST, 1, -1);
    row("RecordPhoto takes the whole text", TASK_RECORD_PHOTO, 0, -1);
    row("Volume", TASK_VOLUME, 1, -1);
    row("PlayRadioFm", TASK_PLAY_RADIO_FM, 1, -1);
    row("Amplifiers", TASK_AMPLIFIERS, 1, -1);
    row("SetCpuFreq", TASK_SET_CPU_FREQ, 1, -1);
    row("Camera", TASK_CAMERA, 1, -1);
    row("Gps", TASK_GPS, 1, -1);
    row("Lan", TASK_LAN, 1, -1);
    row("StopPlaylist", TASK_STOP_PLAYLIST, 0, -1);
    row("StopMessage", TASK_STOP_MESSAGE, 0, -1);
    row("StopRadioFm", TASK_STOP_RADIO_FM, 0, -1);
    row("PlayStream", TASK_PLAY_STREAM, 1, -1);
    row("StopStream", TASK_STOP_STREAM, 0, -1);
    row("enableAux takes just one", TASK_ENABLE_AUX, 1, 1);
    row("RequestPddAction takes just two", TASK_REQUEST_PDD_ACTION, 2, 2);
}

void TaskTest::TheTableTakesParametersByTheirNumber()
{
    QFETCH(int, type);
    QFETCH(int, fewest);
    QFETCH(int, most);
    const TaskKind* const kind = TaskTable::Find(static_cast<TaskType>(type));
    QVERIFY(kind != nullptr);
    for (int count = 0; count <= 5; ++count)
        QCOMPARE(kind->Accepts(count), count >= fewest && (most < 0 || count <= most));
    QCOMPARE(kind->Accepts(100'000), most < 0);
}

void TaskTest::PddActionsHaveTheirNumbers()
{
    QCOMPARE(static_cast<int>(NONE), 0);
    QCOMPARE(static_cast<int>(STREAM_MIC), 1);
}

void TaskTest::ATaskKeepsWhatItIsMadeWith()
{
    const FakeTask task(TASK_STOP_PLAYLIST, u"xmas"_s);
    QCOMPARE(task.m_type, TASK_STOP_PLAYLIST);
    QCOMPARE(task.m_identifier, u"xmas"_s);
    QCOMPARE(task.m_running, false);
    QCOMPARE(task.parent(), nullptr);
}

void TaskTest::TheBaseToleratesEverything()
{
    QCOMPARE(BareTask().GetDelayable_s(), 0xFFFFFFFFU);
}

void TaskTest::TheBaseIsRunningWhileItsFlagIsSet()
{
    BareTask task;
    QCOMPARE(task.IsRunning(), false);
    task.m_running = true;
    QCOMPARE(task.IsRunning(), true);
}

void TaskTest::TheBaseTakesWhatItDoesNotUse()
{
    BareTask task;
    task.PrepareDelayed(60);
    task.SetCompleted(true);
    QCOMPARE(task.IsRunning(), false);
    QCOMPARE(task.GetDelayable_s(), 0xFFFFFFFFU);
    QCOMPARE(task.m_identifier, u"identifier"_s);
    EXPECT_LOG(9, {});
}

OZNA_CASE(Task, TaskTest)
#include "tst_Task.moc"
