#include "OneRequest.h"

#include "PeerAnswers.h"

#include <QTest>

void OneRequestRows::Add(const QList<OneRequest>& requests)
{
    QTest::addColumn<OneRequest>("request");
    QTest::addColumn<PeerAnswer>("answer");
    for (const OneRequest& request : requests)
    {
        for (const PeerAnswer& answer : PeerAnswers::All())
            QTest::addRow("%s: %s", request.name.constData(), answer.name) << request << answer;
    }
}

void OneRequestRows::Check(PeerRecorder& peers)
{
    QFETCH(OneRequest, request);
    QFETCH(PeerAnswer, answer);
    const bool byStatusAlone = request.onBusError.text.isEmpty();
    const bool isAccepted = byStatusAlone ? answer.status == 0 : answer.IsAccepted();
    LogText outcome = isAccepted ? request.onAccepted : request.onRefused;
    if (answer.isBusError && !byStatusAlone)
        outcome = request.onBusError;
    const LogLines log = request.before + LogLines{{outcome.level, answer.Filled(outcome.text)}};

    std::unique_ptr<Task> task = request.make();
    LogRecorder::Clear();
    peers.Answer(request.Method().toLatin1().constData(), [&answer](const PeerRequest&) { return answer.reply; });
    // A task keeps nothing of what it was answered: the next day it asks in the same way.
    for (int day = 0; day < 2; ++day)
    {
        QCOMPARE(task->Run(), isAccepted);
        QCOMPARE(peers.Requests().size(), 1);
        QCOMPARE(peers.Requests()[0].timeout_ms, request.timeout_ms);
        EXPECT_REQUESTS(peers, {request.request});
        EXPECT_LOG(9, (log));
        QCOMPARE(task->IsRunning(), false);
    }
    task.reset();
    EXPECT_REQUESTS(peers, {});
    EXPECT_LOG(9, {});
}
