#include "PeerAnswers.h"
#include "Request.h"
#include "Suite.h"
#include "TaskTable.h"
#include "UnitTest.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace
{

std::unique_ptr<Task> Make(const Request& request)
{
    const QString parameters = request.Schedule().section(u'|', 1);
    const QStringList split = parameters.isEmpty() ? QStringList() : parameters.split(u',');
    const TaskKind* const kind = TaskTable::Find(static_cast<TaskType>(request.Row().kind));
    return kind->create({u"08:30:00"_s, parameters, split});
}

// The proxies leave the bus library's time-out as it is.
int ProxyTimeout(const RequestRow& row)
{
    return row.timeout_ms == LIBRARY_TIMEOUT_MS ? -1 : row.timeout_ms;
}

} // namespace

// Every request of the table, with each of its examples and with whatever its peer may answer.
class RequestsTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AStartIsJudgedAndLogged_data() { AddRows(Trigger::START); }
    void AStartIsJudgedAndLogged();
    void ADeletionIsJudgedAndLogged_data() { AddRows(Trigger::DELETION); }
    void ADeletionIsJudgedAndLogged();

private:
    void Begin() override;
    void End() override { qunsetenv("OZNA_CONFIG_FILE"); }

    static void AddRows(Trigger trigger);
    void Compare(const QList<Request>& requests, const QStringList& records);
};

void RequestsTest::Begin()
{
    Data().WritePlaylist("first.mp3;60\nsecond.mp3;30\n", u"day"_s);
    QFile file(Data().Path() + u"/ozna.ini"_s);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[GENERAL]\nServerIp=10.0.0.5\n") > 0);
    qputenv("OZNA_CONFIG_FILE", QFile::encodeName(file.fileName()));
}

void RequestsTest::AddRows(Trigger trigger)
{
    QTest::addColumn<Request>("request");
    QTest::addColumn<PeerAnswer>("answer");
    for (const Request& request : Request::All())
    {
        for (const PeerAnswer& answer : PeerAnswers::All())
        {
            if (request.Row().trigger == trigger)
                QTest::addRow("%s, %s: %s", request.Row().id, qPrintable(request.Schedule()), answer.name)
                    << request << answer;
        }
    }
}

// The requests that were sent, each with its time-out, and all records.
void RequestsTest::Compare(const QList<Request>& requests, const QStringList& records)
{
    QStringList calls;
    for (const PeerRequest& sent : Bus().Requests())
        calls.append(u"%1, %2 ms"_s.arg(sent.Shown()).arg(sent.timeout_ms));
    QStringList expected;
    for (const Request& request : requests)
        expected.append(u"%1, %2 ms"_s.arg(request.Call()).arg(ProxyTimeout(request.Row())));
    QCOMPARE(calls, expected);
    Bus().Clear();
    EXPECT_LOG(9, (ToLines(records)));
}

void RequestsTest::AStartIsJudgedAndLogged()
{
    QFETCH(Request, request);
    QFETCH(PeerAnswer, answer);
    const RequestRow& row = request.Row();
    const Outcome outcome = answer.TakenAs(row.judged);
    const bool isAccepted = outcome == Outcome::ACCEPTED || !row.isDecisive;
    QList<Request> requests = request.Before();
    QStringList records = request.RecordsBefore() + answer.Filled(request.Records(outcome));
    requests.append(request);
    if (request.IsFollowed(outcome))
    {
        requests.append(request.Followed());
        records += request.Followed().Records(Outcome::ACCEPTED);
    }

    std::unique_ptr<Task> task = Make(request);
    LogRecorder::Clear();
    Bus().Answer(request.Method().section(u'.', 1).toLatin1().constData(), [&](const PeerRequest&) {
        [&] { QCOMPARE(task->IsRunning(), row.wait != Wait::NOTHING); }();
        return answer.reply;
    });
    // A task keeps nothing of what it was answered: the next day it asks in the same way.
    for (int day = 0; day < (row.wait == Wait::NOTHING ? 2 : 1); ++day)
    {
        QCOMPARE(task->Run(), isAccepted);
        Compare(requests, records);
    }
    // Whatever was answered, only a photo ends the work of taking one.
    const bool isRunning = row.wait == Wait::PLAYBACK ? isAccepted : row.wait != Wait::NOTHING;
    QCOMPARE(task->IsRunning(), isRunning);
    task.reset();
    if (!isRunning)
        Compare({}, {});
    LogRecorder::Clear();
}

void RequestsTest::ADeletionIsJudgedAndLogged()
{
    QFETCH(Request, request);
    QFETCH(PeerAnswer, answer);
    std::unique_ptr<Task> task = Make(request);
    LogRecorder::Clear();
    QVERIFY(task->Run());
    Compare(request.Before(), request.RecordsBefore());
    Bus().Answer(request.Method().section(u'.', 1).toLatin1().constData(),
                 [&](const PeerRequest&) { return answer.reply; });
    task.reset();
    Compare({request}, answer.Filled(request.Records(answer.TakenAs(request.Row().judged))));
}

OZNA_CASE(Requests, RequestsTest)
#include "tst_Requests.moc"
