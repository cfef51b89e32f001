#include "AskingAllTest.h"
#include "Suite.h"

// The far pass asks few of the playlists that may be late, and finds what it would find if it asked all.
class LatePlaylistsTest final : public AskingAllTest
{
    Q_OBJECT
private Q_SLOTS:
    void APassFindsWhatAskingAllFinds();
};

void LatePlaylistsTest::APassFindsWhatAskingAllFinds()
{
    const QDateTime noon(QDate(2024, 5, 15), QTime(12, 0), Qt::UTC);
    CompareAround({noon, noon.addSecs(43200)}, 60, 2);
    QVERIFY(Found().early > 1000);
    QVERIFY(Found().late > 100);
    QVERIFY(Found().skipped > 10);
}

OZNA_CASE(LatePlaylists, LatePlaylistsTest)
#include "tst_LatePlaylists.moc"
