#include "LogRecorder.h"
#include "PlayKinds.h"
#include "Rows.h"
#include "Suite.h"
#include "TasksOnBusTest.h"

#include <QDBusMessage>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr int ROUNDS = 100;
constexpr std::array GAPS_MS{0, 1, 2, 5, 20};

struct Order
{
    const char* name;
    const PlayKind& kind;
    bool isFirst; // the signal
};

constexpr std::array ORDERS{
    Order{"message-before", PLAYBACKS[0], true},  Order{"message-behind", PLAYBACKS[0], false},
    Order{"playlist-before", PLAYBACKS[1], true}, Order{"playlist-behind", PLAYBACKS[1], false},
    Order{"stream-before", PLAYBACKS[2], true},   Order{"stream-behind", PLAYBACKS[2], false},
};

} // namespace

// Signals of an end right before and right behind the answer to a request: the one behind it ends the playback, the one
// before it is that of another.
class PlaybackEnds : public TasksOnBusTest
{
    Q_OBJECT

private Q_SLOTS:
    void OnlyAnEndBehindTheAnswerCounts_data() { AddRows(ORDERS); }
    void OnlyAnEndBehindTheAnswerCounts();

public Q_SLOTS:
    void OnSignal(const QDBusMessage& /*message*/) { ++m_signals; }

private:
    [[nodiscard]] bool IsRight(const Order& order, int gap_ms);

    int m_signals = 0;
};

bool PlaybackEnds::IsRight(const Order& order, int gap_ms)
{
    const PeerSignal end = order.kind.End();
    if (order.isFirst)
        Device().EmitThenAnswer(order.kind.Method(), end.name, end.values, gap_ms);
    else
        Device().AnswerThenEmit(order.kind.Method(), end.name, end.values, gap_ms);
    m_signals = 0;
    const std::unique_ptr<Task> task = MakeTask(order.kind.name);
    // The test's own connection tells that the signal has been sent.
    if (!task->Run() || !WaitUntil([this] { return m_signals > 0; }))
        qFatal("nothing is played");
    HandleAll();
    const bool isRight = task->IsRunning() == order.isFirst;
    // It is still heard later.
    if (isRight && order.isFirst)
    {
        Device().Emit(end.name, end.values);
        HandleAll();
    }
    return isRight && !task->m_running;
}

void PlaybackEnds::OnlyAnEndBehindTheAnswerCounts()
{
    const Order& order = Row<Order>();
    const QString signal = QString::fromLatin1(order.kind.End().name).section(u'.', 1);
    QVERIFY(Bus().Connection().connect({}, u"/com/kestrelix/ozna/soundmanager/soundobj"_s,
                                       u"com.kestrelix.ozna.soundinterface"_s, signal, this,
                                       SLOT(OnSignal(QDBusMessage))));
    QStringList wrong;
    for (const int gap_ms : GAPS_MS)
    {
        int count = 0;
        for (int round = 0; round < ROUNDS; ++round)
            count += IsRight(order, gap_ms) ? 0 : 1;
        if (count > 0)
            wrong.append(u"%1 ms: %2 of %3 wrong"_s.arg(gap_ms).arg(count).arg(ROUNDS));
    }
    LogRecorder::Clear();
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u"; "_s)));
}

OZNA_CASE(PlaybackEnds, PlaybackEnds)
#include "tst_PlaybackEnds.moc"
