#include "FakeTask.h"
#include "KindTable.h"
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
    for (const KindRow& kind : AllKinds())
    {
        if (*kind.name)
            row(QString::fromLatin1(kind.name), kind.number);
    }
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
    const auto kinds = static_cast<int>(AllKinds().size());
    for (int type = 0; type <= kinds; ++type)
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
    for (const KindRow& kind : AllKinds())
        row(kind.number, kind.logName);
    row(static_cast<int>(AllKinds().size()), "unknown");
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

void TaskTest::TheTableTakesParametersByTheirNumber()
{
    QCOMPARE(AllKinds().size(), TaskTable::SIZE);
    for (const KindRow& row : AllKinds())
    {
        const TaskKind* const kind = TaskTable::Find(static_cast<TaskType>(row.number));
        QVERIFY(kind != nullptr);
        for (const int count : {0, 1, 2, 3, 4, 5, 100'000})
        {
            const bool isAccepted = count >= row.fewest && (row.most < 0 || count <= row.most);
            QVERIFY2(kind->Accepts(count) == isAccepted, row.logName);
        }
    }
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
