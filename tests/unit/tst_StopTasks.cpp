#include "Suite.h"
#include "UnitTest.h"
#include "tasks/StopMessage.h"
#include "tasks/StopPlaylist.h"
#include "tasks/StopRadioFm.h"
#include "tasks/StopStream.h"

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

using Maker = std::function<std::unique_ptr<Task>()>;

template <typename Kind> std::unique_ptr<Task> Make()
{
    return std::make_unique<Kind>();
}

Maker MakePlaylistStop(const QString& identifier)
{
    return [identifier] { return std::make_unique<StopPlaylist>(identifier); };
}

} // namespace

// The tasks that stop a sound source differ in the source that they name.
class StopTasksTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ACreationIsLogged_data();
    void ACreationIsLogged();
};

void StopTasksTest::ACreationIsLogged_data()
{
    QTest::addColumn<Maker>("make");
    QTest::addColumn<TaskType>("type");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QByteArray>("created");
    const QString none = u""_s;
    QTest::newRow("StopMessage") << Maker(Make<StopMessage>) << TASK_STOP_MESSAGE << none
                                 << "4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage"_ba;
    QTest::newRow("StopRadioFm") << Maker(Make<StopRadioFm>) << TASK_STOP_RADIO_FM << none
                                 << "4 [tasks/StopRadioFm.cpp] TASK CREATED | StopRadioFm"_ba;
    QTest::newRow("StopStream") << Maker(Make<StopStream>) << TASK_STOP_STREAM << none
                                << "4 [tasks/StopStream.cpp] TASK CREATED | StopStream"_ba;
    for (const QString& identifier : {u"xmas"_s, none, u"a b"_s, u"%s"_s, u"No\u00ebl"_s})
        QTest::addRow("StopPlaylist \"%s\"", identifier.toUtf8().constData())
            << MakePlaylistStop(identifier) << TASK_STOP_PLAYLIST << identifier
            << "4 [tasks/StopPlaylist.cpp] TASK CREATED | StopPlaylist: id=" + identifier.toUtf8();
}

void StopTasksTest::ACreationIsLogged()
{
    QFETCH(Maker, make);
    QFETCH(TaskType, type);
    QFETCH(QString, identifier);
    QFETCH(QByteArray, created);
    const std::unique_ptr<Task> task = make();
    EXPECT_LOG(9, {created});
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task->m_type, type);
    QCOMPARE(task->m_identifier, identifier);
    QCOMPARE(task->GetDelayable_s(), 0U);
    QCOMPARE(task->IsRunning(), false);
}

OZNA_CASE(StopTasks, StopTasksTest)
#include "tst_StopTasks.moc"
