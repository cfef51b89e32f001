#include "OrdinaryUser.h"
#include "PlaylistLines.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayPlaylist.h"

#include <QFile>
#include <QRegularExpression>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace PlaylistLines;

// What a playlist task is made of, and which files it cannot be made of.
class PlaylistCreationTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ATaskIsMadeOfItsParameters_data();
    void ATaskIsMadeOfItsParameters();
    void AFileThatCannotBeOpenedIsNoPlaylist_data();
    void AFileThatCannotBeOpenedIsNoPlaylist();
    void AFileWithoutPermissionIsNoPlaylist();
    void ANameIsNeeded();
    void ANameWithANulIsThatOfNoFile();

private:
    void MakeFile(const QString& kind);
};

void PlaylistCreationTest::ATaskIsMadeOfItsParameters_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<LogLines>("warning");
    QTest::addColumn<QByteArray>("created");
    const QString time = u"08:30:00"_s;
    const QString name = u"xmas"_s;
    const auto volume = [&](const char* text, const char* shown) {
        QTest::addRow("volume %s", text) << time << name << QString::fromLatin1(text) << LogLines{}
                                         << "xmas at 08:30:00 (92 s, vol=" + QByteArray(shown) + ")";
    };
    volume("70", "70");
    volume("0", "0");
    volume("-1", "-1");
    volume("-5", "-5");
    volume("+7", "7");
    volume("2147483647", "2147483647");
    for (const char* const text : {"", "loud", "7.5", "0x10", "2147483648", "70%", "%s"})
        QTest::addRow("volume \"%s\"", text)
            << time << name << QString::fromLatin1(text)
            << LogLines{"2 [tasks/PlayPlaylist.cpp] Invalid volume=" + QByteArray(text) + ", not used"}
            << "xmas at 08:30:00 (92 s, vol=-1)"_ba;
    const auto start = [&](const char* text, const char* shown) {
        QTest::addRow("time \"%s\"", text) << QString::fromLatin1(text) << name << u"70"_s << LogLines{}
                                           << "xmas at " + QByteArray(shown) + " (92 s, vol=70)";
    };
    start("00:00:00", "00:00:00");
    start("23:59:59", "23:59:59");
    for (const char* const text : {"", "8:30:00", "08:30", "24:00:00", "08:60:00", "noon"})
        start(text, "");
    for (const char* const file : {"xmas.txt", "our songs", "No\xc3\xabl", "%s%n", "../playlists/xmas"})
        QTest::addRow("name \"%s\"", file) << time << QString::fromUtf8(file) << u"70"_s << LogLines{}
                                           << QByteArray(file) + " at 08:30:00 (92 s, vol=70)";
}

void PlaylistCreationTest::ATaskIsMadeOfItsParameters()
{
    QFETCH(QString, time);
    QFETCH(QString, name);
    QFETCH(QString, volume);
    QFETCH(LogLines, warning);
    QFETCH(QByteArray, created);
    Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", name);
    const PlayPlaylist task(time, name, volume, u"identifier"_s);
    EXPECT_LOG(9, (warning + LogLines{Loading(Data().PlaylistPath(name).toUtf8()), Found("track1.mp3", 60),
                                      Found("track2.mp3", 30), Loaded(2), Created(created)}));
    EXPECT_REQUESTS(Bus(), {});
    QCOMPARE(task.m_type, TASK_PLAY_PLAYLIST);
    QCOMPARE(task.m_identifier, u"identifier"_s);
    QCOMPARE(task.GetDelayable_s(), 62U);
    QCOMPARE(task.IsRunning(), false);
    QCOMPARE(task.IsCompleted(), false);
    QCOMPARE(PlayPlaylist::GetPlaylistsPath(), Data().Path() + u"/playlists"_s);
}

// Makes what stands where the playlist "xmas" is looked for.
void PlaylistCreationTest::MakeFile(const QString& kind)
{
    const QString path = Data().PlaylistPath(u"xmas"_s);
    const QByteArray name = QFile::encodeName(path);
    if (kind == "folder"_L1)
        QCOMPARE(::mkdir(name.constData(), 0700), 0);
    else if (kind == "pipe"_L1)
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    else if (kind.startsWith("link to "_L1))
        QVERIFY(QFile::link(kind.section(u' ', 2), path));
    else
        QCOMPARE(kind, u"nothing"_s);
}

void PlaylistCreationTest::AFileThatCannotBeOpenedIsNoPlaylist_data()
{
    // The row's name is the kind of file.
    Rows<bool, QByteArray>::Add({
        {"nothing", false, {}},
        {"link to missing", false, {}},
        {"link to xmas", false, "Too many levels of symbolic links"},
        {"folder", true, "Is a directory"},
        {"pipe", true, "Not a regular file"}, // must not wait for a writer
        {"link to .", true, "Is a directory"},
        {"link to /dev/zero", true, "Not a regular file"},
    });
}

void PlaylistCreationTest::AFileThatCannotBeOpenedIsNoPlaylist()
{
    const auto& [exists, reason] = Rows<bool, QByteArray>::Current();
    MakeFile(QString::fromLatin1(QTest::currentDataTag()));
    // The volume is read before the file.
    QVERIFY_THROWS_EXCEPTION(std::exception, PlayPlaylist(u"08:30:00"_s, u"xmas"_s, u"loud"_s, {}));
    const QByteArray path = Data().PlaylistPath(u"xmas"_s).toUtf8();
    LogLines log{"2 [tasks/PlayPlaylist.cpp] Invalid volume=loud, not used", Loading(path), NotOpened(path)};
    if (exists)
        log.append(
            LogLine("1 [tasks/PlayPlaylist.cpp] Playlist file (path=" + path + ") exists: why I couldn't open it ?",
                    FILE_ORIGIN));
    if (!reason.isEmpty())
        log.append(OpenError(reason));
    log.append(Failed());
    EXPECT_LOG(9, (log));
    EXPECT_REQUESTS(Bus(), {});
}

void PlaylistCreationTest::AFileWithoutPermissionIsNoPlaylist()
{
    Data().WritePlaylist("track1.mp3;60\n", u"xmas"_s);
    const QByteArray path = Data().PlaylistPath(u"xmas"_s).toUtf8();
    for (const QString& folder : {Data().Path(), Data().PlaylistPath({})})
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0755), 0);
    QCOMPARE(::chmod(path.constData(), 0), 0);
    const OrdinaryUser user;
    QVERIFY_THROWS_EXCEPTION(std::exception, PlayPlaylist(u"08:30:00"_s, u"xmas"_s, u"70"_s, {}));
    EXPECT_LOG(4, {NotOpened(path),
                   {"1 [tasks/PlayPlaylist.cpp] Playlist file (path=" + path + ") exists: why I couldn't open it ?",
                    FILE_ORIGIN},
                   OpenError("Permission denied"),
                   Failed()});
}

void PlaylistCreationTest::ANameIsNeeded()
{
    QVERIFY_THROWS_EXCEPTION(std::exception, PlayPlaylist(u"08:30:00"_s, {}, u"70"_s, u"id"_s));
    EXPECT_LOG(9, {{"1 [tasks/PlayPlaylist.cpp] Playlist name not specified", FILE_ORIGIN}, Failed()});
}

void PlaylistCreationTest::ANameWithANulIsThatOfNoFile()
{
    // The library would complain beside the log.
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    Data().WritePlaylist("track1.mp3;60\n", u"xmas"_s);
    QVERIFY_THROWS_EXCEPTION(std::exception, PlayPlaylist(u"08:30:00"_s, u"xmas\0"_s, u"70"_s, {}));
    const QByteArray path = Data().PlaylistPath(u"xmas"_s).toUtf8();
    EXPECT_LOG(9, {Loading(path), NotOpened(path), OpenError("Invalid argument"), Failed()});
}

OZNA_CASE(PlaylistCreation, PlaylistCreationTest)
#include "tst_PlaylistCreation.moc"
