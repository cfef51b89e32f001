#include "PeerAnswers.h"
#include "RequestTest.h"
#include "Scheduler.h"
#include "Suite.h"

#include <SoundManagerProxy.h>

using namespace Qt::StringLiterals;

namespace
{

// The proxies leave the bus library's time-out as it is.
int ProxyTimeout(const RequestRow& row)
{
    return row.timeout_ms == LIBRARY_TIMEOUT_MS ? -1 : row.timeout_ms;
}

} // namespace

// Every request of the table, with each of its examples and with whatever its peer may answer.
class RequestsTest final : public RequestTest
{
    Q_OBJECT
private Q_SLOTS:
    void AStartIsJudgedAndLogged_data() { AddRows(Trigger::START); }
    void AStartIsJudgedAndLogged();
    void ARequestThatFollowsIsJudgedAndLogged_data() { PeerAnswers::AddRows(); }
    void ARequestThatFollowsIsJudgedAndLogged();
    void AnyEarlierTimeoutComesBack_data() { PeerAnswers::AddRows(); }
    void AnyEarlierTimeoutComesBack();
    void ADeletionIsJudgedAndLogged_data() { AddRows(Trigger::DELETION); }
    void ADeletionIsJudgedAndLogged();

private:
    static void AddRows(Trigger trigger);
    void Compare(const QList<Request>& requests, const QStringList& records);
};

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

void RequestsTest::ARequestThatFollowsIsJudgedAndLogged()
{
    QFETCH(PeerAnswer, answer);
    int followed = 0;
    for (const Request& request : Request::All())
    {
        if (request.Row().trigger != Trigger::START || !request.IsFollowed(Outcome::ACCEPTED))
            continue;
        ++followed;
        const Request second = request.Followed();
        const Outcome outcome = answer.TakenAs(second.Row().judged);
        std::unique_ptr<Task> task = Make(request);
        Bus().Answer(second.Method().section(u'.', 1).toLatin1().constData(),
                     [&](const PeerRequest&) { return answer.reply; });
        QCOMPARE(task->Run(), outcome == Outcome::ACCEPTED || !second.Row().isDecisive);
        Compare({request, second}, request.Records(Outcome::ACCEPTED) + answer.Filled(second.Records(outcome)));
        task.reset();
        Bus().Clear();
        LogRecorder::Clear();
    }
    QVERIFY(followed > 0);
}

void RequestsTest::AnyEarlierTimeoutComesBack()
{
    QFETCH(PeerAnswer, answer);
    for (const Request& request : Request::First())
    {
        if (request.Row().trigger != Trigger::START || request.Peer() != "sound"_L1)
            continue;
        Bus().Answer(request.Method().section(u'.', 1).toLatin1().constData(),
                     [&](const PeerRequest&) { return answer.reply; });
        for (const int earlier_ms : {-1, 1, 25000})
        {
            const std::unique_ptr<Task> task = Make(request);
            Scheduler::m_soundManProxy->setTimeout(earlier_ms);
            Bus().Clear();
            static_cast<void>(task->Run());
            QCOMPARE(Scheduler::m_soundManProxy->timeout(), earlier_ms);
            // One of the request's own holds whatever the proxy had.
            if (request.Row().timeout_ms != SOUND_TIMEOUT_MS)
                QCOMPARE(Bus().Requests().value(0).timeout_ms, request.Row().timeout_ms);
        }
    }
    LogRecorder::Clear();
}

void RequestsTest::ADeletionIsJudgedAndLogged()
{
    QFETCH(Request, request);
    QFETCH(PeerAnswer, answer);
    std::unique_ptr<Task> task = Make(request);
    QVERIFY(task->Run());
    Compare(request.Before(), request.RecordsBefore());
    Bus().Answer(request.Method().section(u'.', 1).toLatin1().constData(),
                 [&](const PeerRequest&) { return answer.reply; });
    task.reset();
    Compare({request}, answer.Filled(request.Records(answer.TakenAs(request.Row().judged))));
}

OZNA_CASE(Requests, RequestsTest)
#include "tst_Requests.moc"
