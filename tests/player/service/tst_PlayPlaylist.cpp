#include "PlayerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// A playlist: read as the daemon reads it, begun where it is to begin, and stopped by its identifier.
class tst_PlayPlaylist final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void PlaysItsTracksWithThePauseThatTheDaemonCountsWith();
    void BeginsWithTheTrackAskedFor_data();
    void BeginsWithTheTrackAskedFor();
    void BehindItsLastTrackItEndsAtOnce();
    void WhatIsMissingIsLeftOut();
    void WhatCannotBePlayedIsRefused_data();
    void WhatCannotBePlayedIsRefused();
    void AnotherPauseCanBeSet();
    void TheIdentifierStopsTheRightOne();
    void AskedForAgainItIsOneRequest();

private:
    // Three tracks that are there.
    void WriteList();
    [[nodiscard]] static QVariantList Order(uint firstTrack = 1, const QString& startTime = {},
                                            const QString& identifier = u"7"_s);
};

void tst_PlayPlaylist::WriteList()
{
    // A line of nine characters or fewer is none for the daemon, which counts tracks without it.
    Write(u"playlists/day"_s, "# three tracks\na.wav;3\nfirst.wav;60\nsecond.wav;30\nthird.wav;45\n");
    for (const char* track : {"a.wav", "first.wav", "second.wav", "third.wav"})
        Write(u"media/"_s + QString::fromLatin1(track));
}

QVariantList tst_PlayPlaylist::Order(uint firstTrack, const QString& startTime, const QString& identifier)
{
    return {u"day"_s, identifier, firstTrack, startTime, false};
}

void tst_PlayPlaylist::PlaysItsTracksWithThePauseThatTheDaemonCountsWith()
{
    WriteList();
    Sound().BeReady();
    QCOMPARE(Call("PlayPlaylist", Order(1, u"12:00:05"_s)), 0);
    QCOMPARE(Shown(0), u"playlist first.wav second.wav third.wav @ +5000 100"_s);
    QCOMPARE(Sound().Pieces()[0].gap_ms, 2000);
    Q_EMIT Sound().Started(1, Time().Utc_ms() + 5000);
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(1), QStringList(u"PlayPlaylistCompleted(day)"_s));
}

void tst_PlayPlaylist::BeginsWithTheTrackAskedFor_data()
{
    QTest::addColumn<uint>("first");
    QTest::addColumn<QString>("shown");
    QTest::newRow("first") << 1U << u"playlist first.wav second.wav third.wav 100"_s;
    QTest::newRow("second") << 2U << u"playlist second.wav third.wav 100"_s;
    QTest::newRow("last") << 3U << u"playlist third.wav 100"_s;
}

void tst_PlayPlaylist::BeginsWithTheTrackAskedFor()
{
    QFETCH(const uint, first);
    QFETCH(const QString, shown);
    WriteList();
    Sound().BeReady();
    QCOMPARE(Call("PlayPlaylist", Order(first, u"11:59:00"_s)), 0);
    QCOMPARE(Shown(0), shown);
}

void tst_PlayPlaylist::BehindItsLastTrackItEndsAtOnce()
{
    WriteList();
    for (const uint first : {4U, 5U, 4'000'000'000U})
    {
        Ask("PlayPlaylist", Order(first, u"11:59:00"_s));
        QCOMPARE(Seen(2), QStringList({u"PlayPlaylist: 0"_s, u"PlayPlaylistCompleted(day)"_s}));
    }
    QCOMPARE(Sound().Pieces().size(), 0);
}

void tst_PlayPlaylist::WhatIsMissingIsLeftOut()
{
    WriteList();
    QVERIFY(QFile::remove(Path(u"media/second.wav"_s)));
    Sound().BeReady();
    // Left out, it still counts.
    QCOMPARE(Call("PlayPlaylist", Order(2)), 0);
    QCOMPARE(Shown(0), u"playlist third.wav 100"_s);
    Q_EMIT Sound().Skipped(1, u"third.wav"_s, u"no sound in it"_s);
    EXPECT_LOG(LEVEL_WARNING,
               {{u"1 [service/GuardedFolder.cpp] %1 is not there"_s.arg(Path(u"media/second.wav"_s)).toUtf8(),
                 SoundManager::PATH},
                {"2 [service/Requests.cpp] day: third.wav is left out: no sound in it", SoundManager::PATH}});
}

void tst_PlayPlaylist::WhatCannotBePlayedIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<uint>("first");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("record");
    QTest::newRow("no list") << u"none"_s << 1U << 3 << u"1 [service/GuardedFolder.cpp] %1/none is not there"_s;
    QTest::newRow("no name") << QString() << 1U << 2 << u"1 [service/GuardedFolder.cpp] \"\" is no name within %1"_s;
    QTest::newRow("outside") << u"../out"_s << 1U << 2
                             << u"1 [service/GuardedFolder.cpp] \"../out\" is no name within %1"_s;
    QTest::newRow("empty") << u"empty"_s << 1U << 3 << u"1 [service/PlaylistPlayer.cpp] %1/empty has no tracks"_s;
    QTest::newRow("no track 0") << u"day"_s << 0U << 1
                                << u"1 [service/PlaylistPlayer.cpp] day: tracks are counted from 1"_s;
}

void tst_PlayPlaylist::WhatCannotBePlayedIsRefused()
{
    QFETCH(const QString, name);
    QFETCH(const uint, first);
    QFETCH(const int, status);
    QFETCH(const QString, record);
    WriteList();
    Write(u"playlists/empty"_s, "# nothing but this\nshort;1\n");
    Write(u"out"_s, "first.wav;60\n");
    Ask("PlayPlaylist", {name, u"7"_s, first, QString(), false});
    QCOMPARE(Seen(1), QStringList(u"PlayPlaylist: %1"_s.arg(status)));
    QCOMPARE(Sound().Pieces().size(), 0);
    EXPECT_LOG(LEVEL_WARNING, {{QString(record).replace(u"%1"_s, Path(u"playlists"_s)).toUtf8(), SoundManager::PATH}});
}

void tst_PlayPlaylist::AnotherPauseCanBeSet()
{
    Settings().gap_ms = 0;
    StartService();
    WriteList();
    Sound().BeReady();
    QCOMPARE(Call("PlayPlaylist", Order()), 0);
    QCOMPARE(Sound().Pieces()[0].gap_ms, 0);
}

void tst_PlayPlaylist::TheIdentifierStopsTheRightOne()
{
    WriteList();
    Sound().BeReady();
    QCOMPARE(Call("PlayPlaylist", Order(1, {}, u"7"_s)), 0);
    QCOMPARE(Call("PlayPlaylist", Order(1, u"12:00:05"_s, u"8"_s)), 0);
    QCOMPARE(Call("StopPlay", {u"playlist"_s, u"9"_s}), 0);
    QCOMPARE(Call("StopPlay", {u"playlist"_s, QString()}), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList());
    QCOMPARE(Call("StopPlay", {u"playlist"_s, u"8"_s}), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 2"_s));
    QCOMPARE(Seen(1), QStringList(u"PlayPlaylistCompleted(day)"_s));
    QCOMPARE(Call("StopPlay", {u"playlist"_s, u"7"_s}), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
}

void tst_PlayPlaylist::AskedForAgainItIsOneRequest()
{
    WriteList();
    Sound().BeReady();
    QCOMPARE(Call("PlayPlaylist", Order(1, u"12:00:05"_s)), 0);
    QCOMPARE(Call("PlayPlaylist", Order(1, u"12:00:05"_s)), 0);
    QCOMPARE(Sound().Pieces().size(), 1);
    // From another track, or for who stops it by another identifier, it is another one.
    QCOMPARE(Call("PlayPlaylist", Order(2, u"12:00:05"_s)), 0);
    QCOMPARE(Call("PlayPlaylist", Order(1, u"12:00:05"_s, u"8"_s)), 0);
    QCOMPARE(Sound().Pieces().size(), 3);
}

OZNA_CASE(PlayPlaylist, tst_PlayPlaylist)

#include "tst_PlayPlaylist.moc"
