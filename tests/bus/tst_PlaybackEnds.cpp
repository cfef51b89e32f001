#include "LogRecorder.h"
#include "Suite.h"
#include "TasksOnBusTest.h"

#include <QDBusMessage>

#include <array>

using namespace Qt::StringLiterals;

// Signals of an end right before and right behind the answer to a request: the one behind it ends the playback, the one
// before it is that of another.
class PlaybackEnds : public TasksOnBusTest
{
    Q_OBJECT

private Q_SLOTS:
    void OnlyAnEndBehindTheAnswerCounts_data();
    void OnlyAnEndBehindTheAnswerCounts();

public Q_SLOTS:
    void OnSignal(const QDBusMessage& /*message*/) { ++m_signals; }

private:
    [[nodiscard]] bool IsRight(const QString& kind, bool isFirst, int gap_ms);

    int m_signals = 0;
};

namespace
{

constexpr int ROUNDS = 100;
constexpr std::array GAPS_MS{0, 1, 2, 5, 20};

struct Playback
{
    const char* kind;
    const char* method;
    const char* end;
};

constexpr std::array PLAYBACKS{
    Playback{"message", "sound.PlayFile", "sound.PlayFileCompleted"},
    Playback{"playlist", "sound.PlayPlaylist", "sound.PlayPlaylistCompleted"},
    Playback{"stream", "sound.PlayStream", "sound.StreamEnabled"},
};

const Playback& Find(const QString& kind)
{
    return *std::ranges::find_if(PLAYBACKS, [&](const Playback& row) { return kind == QLatin1String(row.kind); });
}

QVariantList EndOf(const Playback& playback, bool isOther)
{
    if (qstrcmp(playback.kind, "stream") == 0)
        return {false};
    return {isOther ? u"other"_s : u"day"_s};
}

} // namespace

bool PlaybackEnds::IsRight(const QString& kind, bool isFirst, int gap_ms)
{
    const Playback& playback = Find(kind);
    if (isFirst)
        Device().EmitThenAnswer(playback.method, playback.end, EndOf(playback, true), gap_ms);
    else
        Device().AnswerThenEmit(playback.method, playback.end, EndOf(playback, false), gap_ms);
    m_signals = 0;
    const std::unique_ptr<Task> task = MakeTask(kind);
    // The test's own connection tells that the signal has been sent.
    if (!task->Run() || !WaitUntil([this] { return m_signals > 0; }))
        qFatal("nothing is played");
    HandleAll();
    const bool isRight = task->IsRunning() == isFirst;
    // It is still heard later.
    if (isRight && isFirst)
    {
        Device().Emit(playback.end, EndOf(playback, false));
        HandleAll();
    }
    return isRight && !task->m_running;
}

void PlaybackEnds::OnlyAnEndBehindTheAnswerCounts_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("isFirst");
    for (const Playback& playback : PLAYBACKS)
    {
        QTest::addRow("%s-before", playback.kind) << QString::fromLatin1(playback.kind) << true;
        QTest::addRow("%s-behind", playback.kind) << QString::fromLatin1(playback.kind) << false;
    }
}

void PlaybackEnds::OnlyAnEndBehindTheAnswerCounts()
{
    QFETCH(QString, kind);
    QFETCH(bool, isFirst);
    const QString signal = QString::fromLatin1(Find(kind).end).section(u'.', 1);
    QVERIFY(Bus().Connection().connect({}, u"/com/kestrelix/ozna/soundmanager/soundobj"_s,
                                       u"com.kestrelix.ozna.soundinterface"_s, signal, this,
                                       SLOT(OnSignal(QDBusMessage))));
    QStringList wrong;
    for (const int gap_ms : GAPS_MS)
    {
        int count = 0;
        for (int round = 0; round < ROUNDS; ++round)
            count += IsRight(kind, isFirst, gap_ms) ? 0 : 1;
        if (count > 0)
            wrong.append(u"%1 ms: %2 of %3 wrong"_s.arg(gap_ms).arg(count).arg(ROUNDS));
    }
    LogRecorder::Clear();
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u"; "_s)));
}

OZNA_CASE(PlaybackEnds, PlaybackEnds)
#include "tst_PlaybackEnds.moc"
