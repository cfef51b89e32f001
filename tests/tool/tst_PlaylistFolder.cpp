#include "CommandCall.h"
#include "Suite.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Where each command looks for playlists when nobody names their folder.
class tst_PlaylistFolder final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void TheFirstFolderThatIsThereCounts_data();
    void TheFirstFolderThatIsThereCounts();
    void WhatWasLookedForIsTold_data();
    void WhatWasLookedForIsTold();
    void WhatIsFoundWithoutThePlaylistTellsNoOtherFolder();

private:
    // A day's rehearsal of SCHEDULE in data/schedule.
    [[nodiscard]] static CommandCall::Result Rehearse(const CommandCall& call);
};

namespace
{

const QString SCHEDULE = u"data/schedule/s.csv"_s;

} // namespace

CommandCall::Result tst_PlaylistFolder::Rehearse(const CommandCall& call)
{
    call.Write(SCHEDULE, "1111111|06:00:00|*|*|*|||PlayPlaylist|morning\n");
    return call.Run({u"rehearse"_s, SCHEDULE, u"--from"_s, u"2024-05-15"_s, u"--tz"_s, u"UTC"_s});
}

void tst_PlaylistFolder::TheFirstFolderThatIsThereCounts_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<QString>("track");

    const auto row = [](const char* name, const QStringList& folders, const char* track) {
        QTest::newRow(name) << folders << QString::fromLatin1(track);
    };
    const QString inside = u"data/schedule/playlists/"_s;
    const QString beside = u"data/playlists/"_s;
    const QString own = u"data/schedule/"_s;
    row("in the schedule's folder", {inside, beside, own}, "track0.mp3");
    row("beside it, as on a device", {beside, own}, "track0.mp3");
    row("the schedule's own", {own}, "track0.mp3");
}

void tst_PlaylistFolder::TheFirstFolderThatIsThereCounts()
{
    QFETCH(const QStringList, folders);
    QFETCH(const QString, track);
    const CommandCall call;
    for (qsizetype i = 0; i < folders.size(); ++i)
        call.Write(folders[i] + u"morning"_s, "track" + QByteArray::number(i) + ".mp3;60\n");
    const CommandCall::Result result = Rehearse(call);
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.output.contains(u"06:00:00  %1\n"_s.arg(track)), qPrintable(result.output));
}

void tst_PlaylistFolder::WhatWasLookedForIsTold_data()
{
    QTest::addColumn<QString>("arguments");
    for (const char* arguments : {"check", "rehearse", "next", "dst", "diff data/schedule/empty.csv"})
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
}

void tst_PlaylistFolder::WhatWasLookedForIsTold()
{
    QFETCH(const QString, arguments);
    const CommandCall call;
    call.Write(u"data/schedule/empty.csv"_s, "");
    call.Write(SCHEDULE, "1111111|06:00:00|*|*|*|||PlayPlaylist|morning\n");
    const CommandCall::Result result = call.Run(arguments.split(u' ') + QStringList(SCHEDULE));
    const QString told = u"there is no folder %1/data/schedule/playlists or %1/data/playlists"_s.arg(call.Folder());
    QVERIFY2((result.output + result.errors).contains(told), qPrintable(result.output + result.errors));
    QCOMPARE(result.status, 2);
}

void tst_PlaylistFolder::WhatIsFoundWithoutThePlaylistTellsNoOtherFolder()
{
    const CommandCall call;
    call.Write(u"data/playlists/evening"_s, "song.mp3;60\n");
    const CommandCall::Result result = Rehearse(call);
    QVERIFY2(result.errors.contains(u"(path=%1/data/playlists/morning)"_s.arg(call.Folder())),
             qPrintable(result.errors));
    QVERIFY2(!result.errors.contains("there is no folder"_L1), qPrintable(result.errors));
}

OZNA_CASE(PlaylistFolder, tst_PlaylistFolder)
#include "tst_PlaylistFolder.moc"
