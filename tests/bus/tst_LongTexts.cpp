#include "LogRecorder.h"
#include "Suite.h"
#include "TasksOnBusTest.h"
#include "tasks/StopPlaylist.h"

namespace
{

constexpr qsizetype LONGEST = 1 << 20; // characters

} // namespace

// The bus drops the connection of who sends too much, so a text of unlikely length is not sent.
class LongTexts final : public TasksOnBusTest
{
    Q_OBJECT

private Q_SLOTS:
    void ATextIsSentUpToItsLimit();
};

void LongTexts::ATextIsSentUpToItsLimit()
{
    for (const qsizetype length : {LONGEST, LONGEST + 1})
    {
        const bool isSent = length == LONGEST;
        StopPlaylist task(QString(length, u'x'));
        Device().Forget();
        QCOMPARE(task.Run(), isSent);
        QCOMPARE(Device().Calls().size(), isSent ? 1 : 0);
        QVERIFY(QDBusConnection::sessionBus().isConnected());
        LogRecorder::Clear();
    }
}

OZNA_CASE(LongTexts, LongTexts)
#include "tst_LongTexts.moc"
