#include "AskingAllTest.h"
#include "Suite.h"
#include "starts/ScheduleIndex.h"

#include <algorithm>

using namespace Qt::StringLiterals;

// The far pass asks few of the playlists that may be late, and finds what it would find if it asked all.
class LatePlaylistsTest final : public AskingAllTest
{
    Q_OBJECT
private Q_SLOTS:
    void APassFindsWhatAskingAllFinds();
    void APassThatRunsAcrossMidnightAsksTheNextDaysFirst();
};

void LatePlaylistsTest::APassFindsWhatAskingAllFinds()
{
    const QDateTime noon(QDate(2024, 5, 15), QTime(12, 0), Qt::UTC);
    CompareAround({noon, noon.addSecs(43200)}, 60, 2);
    QVERIFY(Found().early > 1000);
    QVERIFY(Found().late > 100);
    QVERIFY(Found().skipped > 10);
}

void LatePlaylistsTest::APassThatRunsAcrossMidnightAsksTheNextDaysFirst()
{
    Data().WritePlaylist("first.mp3;60\nsecond.mp3;30\n", u"day"_s);
    ActionList far;
    for (const QString& line : {u"00:00:00|*|*|*|||PlayPlaylist|day"_s, u"00:00:01|*|*|*|||Volume|1"_s,
                                u"00:00:10|*|*|*|||Volume|1"_s, u"00:01:00|*|*|*|||Volume|1"_s})
        far.Append(std::make_unique<Action>(u"1111111|"_s + line));
    ScheduleIndex index;
    index.Build(far);
    Time().SetLocal({23, 59, 59, 999});
    const Clock::Reading now = Clock::Read();
    Time().Advance_ms(1);
    const auto isEarly = [](const auto& entry) { return (*entry)->IsEarly(); };
    QCOMPARE(std::ranges::count_if(index.m_candidates.At(now, far), isEarly), 3);
    LogRecorder::Clear();
    index.Clear();
}

OZNA_CASE(LatePlaylists, LatePlaylistsTest)
#include "tst_LatePlaylists.moc"
