#include "BusTest.h"
#include "Lines.h"
#include "Suite.h"

#include <QDir>
#include <QStringEncoder>

#include <sys/stat.h>
#include <unistd.h>

using namespace Lines;
using namespace Qt::StringLiterals;

// A playlist file that is not what it should be costs its own action, and no other.
class Playlists : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void WhatIsNoRegularFileIsRejectedAtOnce();
    void WhatCanBeReadIsPlayed();
    void ATimeThatIsNoneIsLateFromMidnightOn_data();
    void ATimeThatIsNoneIsLateFromMidnightOn();

private:
    [[nodiscard]] QString PathOf(const char* name) const;
    [[nodiscard]] bool StartDue(const QList<QByteArray>& names);
};

namespace
{

const QString FILE_ORIGIN = u" (from /com/kestrelix/ozna/soundmanager/soundobj)"_s;
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
    return DataPath(u"playlists/"_s + QString::fromLatin1(name));
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
    Time().Set(MONDAY, {8, 29, 59});
    return true;
}

void Playlists::WhatIsNoRegularFileIsRejectedAtOnce()
{
    QVERIFY(QDir().mkdir(PathOf("folder")));
    QCOMPARE(::mkfifo(qPrintable(PathOf("pipe")), 0600), 0);
    QCOMPARE(::symlink("/dev/zero", qPrintable(PathOf("device"))), 0);
    QCOMPARE(::symlink("loop", qPrintable(PathOf("loop"))), 0);
    WritePlaylist(TRACKS, u"forbidden"_s);
    QCOMPARE(::chmod(qPrintable(PathOf("forbidden")), 0), 0);
    Daemon().DropPrivileges();

    QVERIFY(StartDue({"missing", "folder", "pipe", "device", "loop", "forbidden"}));
    QVERIFY(Daemon().Log().contains(Loaded(1).first()));
    QStringList errors;
    const auto expect = [&](const char* name, bool exists, const char* reason) {
        const QString start = u"1 [tasks/PlayPlaylist.cpp] "_s;
        const QString path = PathOf(name);
        errors += start + u"Playlist file open failed (path=%1)"_s.arg(path) + FILE_ORIGIN;
        if (exists)
            errors += start + u"Playlist file (path=%1) exists: why I couldn't open it ?"_s.arg(path) + FILE_ORIGIN;
        if (reason != nullptr)
            errors += u"2 [tasks/PlayPlaylist.cpp] Playlist file open error: "_s + QLatin1String(reason) + FILE_ORIGIN;
        errors += {start + u"TASK CREATION FAILED"_s, u"2 [Scheduler.cpp] Action ignored"_s};
    };
    expect("missing", false, nullptr);
    expect("folder", true, "Is a directory");
    expect("pipe", true, "Not a regular file");
    expect("device", true, "Not a regular file");
    expect("loop", false, "Too many levels of symbolic links");
    expect("forbidden", true, "Permission denied");
    COMPARE_LINES(Daemon().Take(2), errors);
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {u"sound.SetMasterVolume d 10"_s});
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
        {"carriage-returns-too-many", WithEnds("\r\r\n"), 2},
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
        loaded += u"4 [tasks/PlayPlaylist.cpp] Playlist loaded (%1 tracks) "
                  "(from /com/kestrelix/ozna/audiomanager/audioobj)"_s.arg(file.tracks);
        calls += u"sound.PlayPlaylist ssusb %1  1 08:30:04 false"_s.arg(QString::fromLatin1(file.name));
    }
    QVERIFY(StartDue(names));
    const QStringList log = Daemon().Take();
    COMPARE_LINES(log.filter(u"Playlist loaded"_s), loaded);
    COMPARE_LINES(log.filter(QRegularExpression(u"^2 "_s)),
                  {u"2 [tasks/PlayPlaylist.cpp] Playlist file may be cut: line 3 has no line end (path=%1)"_s.arg(
                       PathOf("cut-in-a-line")) +
                   FILE_ORIGIN});
    // No byte in front of the first track is taken for its name.
    QCOMPARE(log.filter(u"Playlist line found: first.mp3|60)"_s).size(), names.size());
    QVERIFY(Device().WaitForCalls(calls.size() + 1));
    COMPARE_LINES(Device().Calls(), calls + QStringList{u"sound.SetMasterVolume d 10"_s});
}

void Playlists::ATimeThatIsNoneIsLateFromMidnightOn_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QTime>("loaded");
    QTest::addColumn<bool>("joined");
    for (const char* start : {"24:00:00", "25:00:00", "-1:00:00"})
    {
        const QByteArray name(start);
        QTest::newRow(name + ", loaded at 14:00") << QString::fromLatin1(start) << QTime(14, 0) << false;
        QTest::newRow(name + ", loaded right after midnight") << QString::fromLatin1(start) << QTime(0, 0, 15) << true;
    }
}

void Playlists::ATimeThatIsNoneIsLateFromMidnightOn()
{
    QFETCH(QString, start);
    QFETCH(QTime, loaded);
    QFETCH(bool, joined);
    WritePlaylist(TRACKS, u"day"_s);
    const QTime later = loaded.addSecs(10);
    WriteSchedule("1111111|" + start.toLatin1() + "|*|*|*|||PlayPlaylist|day\n1111111|" +
                  later.toString(u"HH:mm:ss"_s).toLatin1() + "|*|*|*|||Volume|10\n");
    Time().Set(MONDAY, loaded);
    QVERIFY(StartDaemon());
    // The pass that finds this has looked at the playlist before.
    QVERIFY(Daemon().WaitForLog(u"4 [Scheduler.cpp] EARLY action found: 5 (Volume)"_s));
    Time().Set(MONDAY, later);
    QVERIFY(Device().WaitForCalls(joined ? 2 : 1));
    QStringList calls{u"sound.SetMasterVolume d 10"_s};
    if (joined)
        calls.prepend(u"sound.PlayPlaylist ssusb day  2  false"_s);
    COMPARE_LINES(Device().Calls(), calls);
    QCOMPARE(Daemon().Take(2).filter(u"IsDelayed but still valid"_s).size(), joined ? 1 : 0);
}

OZNA_CASE(Playlists, Playlists)
#include "tst_Playlists.moc"
