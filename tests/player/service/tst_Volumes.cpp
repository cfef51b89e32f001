#include "PlayerTest.h"
#include "Suite.h"

#include <cmath>

using namespace Qt::StringLiterals;

// Volumes: what one is meant for, and that it is kept.
class tst_Volumes final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ItBelongsToTheRequestThatFollows_data();
    void ItBelongsToTheRequestThatFollows();
    void WithoutARequestItChangesWhatPlays();
    void WhatWaitsWithAVolumeOfItsOwnKeepsIt();
    void AnotherSourceIsNotMeant();
    void ItGoesWithARequestThatIsRefused();
    void TheLatestIsTheNextRequests();
    void TheMasterCountsAtOnce();
    void WhatIsNoVolumeIsRefused_data();
    void WhatIsNoVolumeIsRefused();
    void TheyAreKeptOverARestart();
    void ChangesAreWrittenTogether();
    void AFileOfRubbishIsNoHindrance();

private:
    // Longer than a request may take to follow.
    static void WaitForNoRequest()
    {
        static_cast<void>(WaitUntil([] { return false; }, 500));
    }
    inline static const QString FILE_NAME = u"state/volumes.ini"_s;
};

void tst_Volumes::ItBelongsToTheRequestThatFollows_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("file") << u"file"_s << QByteArray("PlayFile") << QVariantList{u"bye.wav"_s, u"12:00:08"_s};
    QTest::newRow("playlist") << u"playlist"_s << QByteArray("PlayPlaylist")
                              << QVariantList{u"day"_s, u"8"_s, 1U, u"12:00:08"_s, false};
    QTest::newRow("stream") << u"stream"_s << QByteArray("PlayStream")
                            << QVariantList{u"rtsp://10.0.0.5:8554/live"_s, 0U};
}

void tst_Volumes::ItBelongsToTheRequestThatFollows()
{
    QFETCH(const QString, source);
    QFETCH(const QByteArray, method);
    QFETCH(const QVariantList, arguments);
    Write(u"media/gong.wav"_s);
    Write(u"media/bye.wav"_s);
    Write(u"playlists/day"_s, "gong.wav;60\n");
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    QCOMPARE(Call("PlayPlaylist", {u"day"_s, u"7"_s, 1U, QString(), false}), 0);
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    Q_EMIT Sound().Started(2, Time().Utc_ms());
    QCOMPARE(Call("SetPlayerVolume", {source, 40.0}), 0);
    QCOMPARE(Call(method.constData(), arguments), 0);
    WaitForNoRequest();
    // What plays, maybe of the same source, stays as loud as it is.
    QCOMPARE(Sound().Pieces().size(), 3);
    QCOMPARE(Sound().Pieces()[2].volume, 40);
    QCOMPARE(Sound().TakeCalls(), QStringList());
}

void tst_Volumes::WithoutARequestItChangesWhatPlays()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, u"12:00:08"_s}), 0);
    QCOMPARE(Call("PlayStream", {u"rtsp://10.0.0.5:8554/live"_s, 0U}), 0);
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 40.0}), 0);
    QCOMPARE(Sound().TakeCalls(), QStringList());
    WaitForNoRequest();
    QCOMPARE(Sound().TakeCalls(), QStringList({u"volume 1 40"_s, u"volume 2 40"_s}));
    QCOMPARE(Call("SetPlayerVolume", {u"stream"_s, 30.0}), 0);
    WaitForNoRequest();
    QCOMPARE(Sound().TakeCalls(), QStringList(u"volume 3 30"_s));
    // And is what later requests begin with.
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    QCOMPARE(Sound().Pieces()[3].volume, 40);
}

void tst_Volumes::WhatWaitsWithAVolumeOfItsOwnKeepsIt()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 70.0}), 0);
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, u"12:00:08"_s}), 0);
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 40.0}), 0);
    WaitForNoRequest();
    QCOMPARE(Sound().TakeCalls(), QStringList());
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 20.0}), 0);
    WaitForNoRequest();
    QCOMPARE(Sound().TakeCalls(), QStringList(u"volume 1 20"_s));
}

void tst_Volumes::AnotherSourceIsNotMeant()
{
    Write(u"media/gong.wav"_s);
    Write(u"playlists/day"_s, "gong.wav;60\n");
    Sound().BeReady();
    QCOMPARE(Call("PlayPlaylist", {u"day"_s, u"7"_s, 1U, QString(), false}), 0);
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    QCOMPARE(Call("SetPlayerVolume", {u"playlist"_s, 40.0}), 0);
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    WaitForNoRequest();
    QCOMPARE(Sound().Pieces()[1].volume, 100);
    QCOMPARE(Sound().TakeCalls(), QStringList(u"volume 1 40"_s));
}

void tst_Volumes::ItGoesWithARequestThatIsRefused()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    Q_EMIT Sound().Started(1, Time().Utc_ms());
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 40.0}), 0);
    QCOMPARE(Call("PlayFile", {u"none.wav"_s, QString()}), 3);
    WaitForNoRequest();
    QCOMPARE(Sound().TakeCalls(), QStringList());
    LogRecorder::Clear();
}

void tst_Volumes::TheLatestIsTheNextRequests()
{
    Write(u"media/gong.wav"_s);
    Sound().BeReady();
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 70.0}), 0);
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 40.0}), 0);
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, u"12:00:08"_s}), 0);
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 50.0}), 0);
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, u"12:00:09"_s}), 0);
    QCOMPARE(Sound().Pieces()[0].volume, 40);
    QCOMPARE(Sound().Pieces()[1].volume, 50);
}

void tst_Volumes::TheMasterCountsAtOnce()
{
    QCOMPARE(Sound().Master(), 100);
    QCOMPARE(Call("SetMasterVolume", {35.0}), 0);
    QCOMPARE(Sound().Master(), 35);
}

void tst_Volumes::WhatIsNoVolumeIsRefused_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QVariantList>("arguments");
    const auto row = [](const char* name, const char* method, const QVariantList& arguments) {
        QTest::newRow(name) << QByteArray(method) << arguments;
    };
    row("master below", "SetMasterVolume", {-0.1});
    row("master above", "SetMasterVolume", {100.1});
    row("master of no number", "SetMasterVolume", {std::nan("")});
    row("file below", "SetPlayerVolume", {u"file"_s, -5.0});
    row("file above", "SetPlayerVolume", {u"file"_s, 101.0});
    row("no source", "SetPlayerVolume", {u"gramophone"_s, 50.0});
    row("aux has none", "SetPlayerVolume", {u"aux"_s, 50.0});
    row("radio has none", "SetPlayerVolume", {u"radiofm"_s, 50.0});
}

void tst_Volumes::WhatIsNoVolumeIsRefused()
{
    QFETCH(const QByteArray, method);
    QFETCH(const QVariantList, arguments);
    QCOMPARE(Call(method.constData(), arguments), 1);
    QCOMPARE(Sound().Master(), 100);
    QCOMPARE(LogRecorder::Messages(LEVEL_WARNING).size(), 1);
    LogRecorder::Clear();
}

void tst_Volumes::TheyAreKeptOverARestart()
{
    Write(u"media/gong.wav"_s);
    QCOMPARE(Call("SetPlayerVolume", {u"file"_s, 40.0}), 0);
    QCOMPARE(Call("SetMasterVolume", {62.5}), 0);
    Service().End();
    QCOMPARE(Read(FILE_NAME), QByteArray("[volumes]\nfile=40\nmaster=62.5\n"));
    StartService();
    QCOMPARE(Sound().Master(), 62.5);
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    QCOMPARE(Sound().Pieces()[0].volume, 40);
}

void tst_Volumes::ChangesAreWrittenTogether()
{
    QCOMPARE(Call("SetMasterVolume", {10.0}), 0);
    QCOMPARE(Read(FILE_NAME), QByteArray("(none)"));
    QCOMPARE(Call("SetMasterVolume", {20.0}), 0);
    QVERIFY(WaitUntil([this] { return Read(FILE_NAME) == "[volumes]\nmaster=20\n"; }));
    QVERIFY(QFile::remove(Path(FILE_NAME)));
    // What does not change is not written.
    QCOMPARE(Call("SetMasterVolume", {20.0}), 0);
    Service().End();
    QCOMPARE(Read(FILE_NAME), QByteArray("(none)"));
}

void tst_Volumes::AFileOfRubbishIsNoHindrance()
{
    Write(FILE_NAME, "[volumes]\nfile=loud\nmaster=101\nstream=30\n");
    StartService();
    QCOMPARE(Sound().Master(), 100);
    QCOMPARE(Call("PlayStream", {u"rtsp://10.0.0.5:8554/live"_s, 0U}), 0);
    QCOMPARE(Sound().Pieces()[0].volume, 30);
    const QByteArray file = Path(FILE_NAME).toUtf8();
    EXPECT_LOG(LEVEL_WARNING, {{"2 [service/Volumes.cpp] " + file + ": file=loud is no volume", SoundManager::PATH},
                               {"2 [service/Volumes.cpp] " + file + ": master=101 is no volume", SoundManager::PATH}});
}

OZNA_CASE(Volumes, tst_Volumes)

#include "tst_Volumes.moc"
