#include "BusTest.h"
#include "Lines.h"

#include <QDir>
#include <QStringEncoder>

#include <sys/stat.h>
#include <unistd.h>

using namespace Lines;

// A playlist file that is not what it should be costs its own action, and no other.
class Playlists : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatIsNoRegularFileIsRejectedAtOnce();
    void WhatCanBeReadIsPlayed();

private:
    [[nodiscard]] QString PathOf(const char* name) const;
    [[nodiscard]] bool StartDue(const QList<QByteArray>& names);
};

namespace
{

const QString FILE_ORIGIN = QStringLiteral(" (from /com/kestrelix/ozna/soundmanager/soundobj)");
const QByteArray TRACKS = "first.mp3;60\nsecond.mp3;30\n";

QByteArray WithEnds(const QByteArray& end)
{
    return QByteArray(TRACKS).replace("\n", end);
}

QByteArray Encoded(QStringConverter::Encoding encoding)
{
    QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
    return encoder(QString::fromLatin1(WithEnds("\r\n")));
}

} // namespace

QString Playlists::PathOf(const char* name) const
{
    return DataPath(QStringLiteral("playlists/") + QString::fromLatin1(name));
}

// Starts the daemon with all those playlists due at 08:30:04, and with something else due then.
bool Playlists::StartDue(const QList<QByteArray>& names)
{
    QByteArray schedule;
    for (const QByteArray& name : names)
        schedule += "1111111|08:30:04|*|*|*|||PlayPlaylist|" + name + '\n';
    WriteSchedule(schedule + "1111111|08:30:04|*|*|*|||Volume|10\n");
    if (!StartDaemon())
        return false;
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 59), Qt::UTC));
    return true;
}

void Playlists::WhatIsNoRegularFileIsRejectedAtOnce()
{
    QVERIFY(QDir().mkdir(PathOf("folder")));
    QCOMPARE(::mkfifo(qPrintable(PathOf("pipe")), 0600), 0);
    QCOMPARE(::symlink("/dev/zero", qPrintable(PathOf("device"))), 0);
    QCOMPARE(::symlink("loop", qPrintable(PathOf("loop"))), 0);
    WritePlaylist(TRACKS, QStringLiteral("forbidden"));
    QCOMPARE(::chmod(qPrintable(PathOf("forbidden")), 0), 0);
    Daemon().DropPrivileges();

    QVERIFY(StartDue({"missing", "folder", "pipe", "device", "loop", "forbidden"}));
    QVERIFY(Daemon().Log().contains(Loaded(1).first()));
    QStringList errors;
    const auto expect = [&](const char* name, bool exists) {
        const QString start = QStringLiteral("1 [tasks/PlayPlaylist.cpp] ");
        const QString path = PathOf(name);
        errors += start + QStringLiteral("Playlist file open failed (path=%1)").arg(path) + FILE_ORIGIN;
        if (exists)
            errors += start + QStringLiteral("Playlist file (path=%1) exists: why I couldn't open it ?").arg(path) +
                      FILE_ORIGIN;
        errors += {start + QStringLiteral("TASK CREATION FAILED"), QStringLiteral("2 [Scheduler.cpp] Action ignored")};
    };
    expect("missing", false);
    expect("folder", true);
    expect("pipe", true);
    expect("device", true);
    expect("loop", false);
    expect("forbidden", true);
    COMPARE_LINES(Daemon().Take(2), errors);
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {QStringLiteral("sound.SetMasterVolume d 10")});
}

void Playlists::WhatCanBeReadIsPlayed()
{
    const struct
    {
        const char* name;
        QByteArray content;
        int tracks;
    } files[]{
        {"plain", TRACKS, 2},
        {"carriage-returns", WithEnds("\r"), 2},
        {"both-ends-of-line", WithEnds("\r\n"), 2},
        {"mark", "\xef\xbb\xbf" + TRACKS, 2},
        {"utf-16-little-end-first", Encoded(QStringConverter::Utf16LE), 2},
        {"utf-16-big-end-first", Encoded(QStringConverter::Utf16BE), 2},
        {"cut-in-a-line", TRACKS + "third.mp", 2},
        {"nul-bytes", QByteArray(100000, '\0') + '\n' + TRACKS, 2},
        {"no-text", QByteArray("\xfd\x80\xc0\xff\xfd\x80\xc0\xff\xfd\x80;9\n") + TRACKS, 3},
    };
    QList<QByteArray> names;
    QStringList loaded;
    QStringList calls;
    for (const auto& file : files)
    {
        WritePlaylist(file.content, QString::fromLatin1(file.name));
        names += file.name;
        loaded += QStringLiteral("4 [tasks/PlayPlaylist.cpp] Playlist loaded (%1 tracks) "
                                 "(from /com/kestrelix/ozna/audiomanager/audioobj)")
                      .arg(file.tracks);
        calls += QStringLiteral("sound.PlayPlaylist ssusb %1  1 08:30:04 false").arg(QString::fromLatin1(file.name));
    }
    QVERIFY(StartDue(names));
    const QStringList log = Daemon().Take();
    COMPARE_LINES(log.filter(QStringLiteral("Playlist loaded")), loaded);
    // No byte in front of the first track is taken for its name.
    QCOMPARE(log.filter(QStringLiteral("Playlist line found: first.mp3|60)")).size(), names.size());
    QVERIFY(Device().WaitForCalls(calls.size() + 1));
    COMPARE_LINES(Device().Calls(), calls + QStringList{QStringLiteral("sound.SetMasterVolume d 10")});
}

QTEST_GUILESS_MAIN(Playlists)
#include "tst_Playlists.moc"
