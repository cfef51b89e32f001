#include "OneRequest.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/StopPlaylist.h"
#include "tasks/StopRadioFm.h"
#include "tasks/StopStream.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr int SOUND_TIMEOUT_MS = 3000;

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
    void AStopIsSentAndItsAnswerLogged_data();
    void AStopIsSentAndItsAnswerLogged();
};

void StopTasksTest::ACreationIsLogged_data()
{
    QTest::addColumn<Maker>("make");
    QTest::addColumn<TaskType>("type");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QByteArray>("created");
    const QString none = u""_s;
    QTest::newRow("StopRadioFm") << Maker(Make<StopRadioFm>) << TASK_STOP_RADIO_FM << none
                                 << "[tasks/StopRadioFm.cpp] TASK CREATED | StopRadioFm"_ba;
    QTest::newRow("StopStream") << Maker(Make<StopStream>) << TASK_STOP_STREAM << none
                                << "[tasks/StopStream.cpp] TASK CREATED | StopStream"_ba;
    for (const QString& identifier : {u"xmas"_s, none, u"a b"_s, u"%s"_s, u"No\u00ebl"_s})
        QTest::addRow("StopPlaylist \"%s\"", identifier.toUtf8().constData())
            << MakePlaylistStop(identifier) << TASK_STOP_PLAYLIST << identifier
            << "[tasks/StopPlaylist.cpp] TASK CREATED | StopPlaylist: id=" + identifier.toUtf8();
}

void StopTasksTest::ACreationIsLogged()
{
    QFETCH(Maker, make);
    QFETCH(TaskType, type);
    QFETCH(QString, identifier);
    QFETCH(QByteArray, created);
    const std::unique_ptr<Task> task = make();
    EXPECT_LOG(9, {{4, created}});
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task->m_type, type);
    QCOMPARE(task->m_identifier, identifier);
    QCOMPARE(task->GetDelayable_s(), 0U);
    QCOMPARE(task->IsRunning(), false);
}

void StopTasksTest::AStopIsSentAndItsAnswerLogged_data()
{
    QList<OneRequest> requests;
    const auto stop = [&requests](const QByteArray& name, const QByteArray& kind, const Maker& make,
                                  const QByteArray& source, const QString& identifier) {
        const QByteArray begin = "[tasks/" + kind + ".cpp] ";
        const QByteArray call = "StopPlay(" + source + ")";
        requests.append({name,
                         make,
                         {},
                         u"soundmanager StopPlay(s:%1, s:%2)"_s.arg(QLatin1String(source), identifier),
                         SOUND_TIMEOUT_MS,
                         {1, begin + call + " request error: {error}\n"},
                         {1, begin + call + " error: {status}\n"},
                         {9, begin + "TASK REQUESTED | " + call}});
    };
    stop("StopRadioFm", "StopRadioFm", Make<StopRadioFm>, "radiofm", u""_s);
    stop("StopStream", "StopStream", Make<StopStream>, "stream", u""_s);
    stop("StopPlaylist", "StopPlaylist", MakePlaylistStop(u"xmas"_s), "playlist", u"xmas"_s);
    stop("StopPlaylist of none", "StopPlaylist", MakePlaylistStop(u""_s), "playlist", u""_s);
    OneRequestRows::Add(requests);
}

void StopTasksTest::AStopIsSentAndItsAnswerLogged()
{
    OneRequestRows::Check(Bus());
}

OZNA_CASE(StopTasks, StopTasksTest)
#include "tst_StopTasks.moc"
