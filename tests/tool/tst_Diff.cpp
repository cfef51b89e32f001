#include "CommandCall.h"
#include "Suite.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What two schedules ask for differently, whole.
class tst_Diff final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void OnlyRequestsCount_data();
    void OnlyRequestsCount();
    void ARejectedLineOfTheNewFileGivesStatus2();
    void ARejectedLineOfTheOldFileIsOnlyTold();
    void PlaylistsAreThoseOfEachSide_data();
    void PlaylistsAreThoseOfEachSide();
};

namespace
{

const QString IN_FORCE = u"In force at the end, Fri 2024-06-14 00:00:00:\n"_s;

} // namespace

void tst_Diff::OnlyRequestsCount_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("changes");

    // inForce: what is in force at the end only with one of the two.
    const auto row = [](const char* name, const char* before, const char* after, const char* changes,
                        const char* inForce = "") {
        const QString rows = QString::fromLatin1(changes);
        const QString values = QString::fromLatin1(inForce);
        QTest::newRow(name) << QByteArray(before) << QByteArray(after)
                            << rows + (rows.isEmpty() || values.isEmpty() ? QString() : u"\n"_s) +
                                   (values.isEmpty() ? values : IN_FORCE + values);
    };
    row("the same", "1111111|06:00:00|*|*|*|||Volume|5\n", "1111111|06:00:00|*|*|*|||Volume|5\n", "");
    row("other lines, the same starts",
        "1111111|06:00:00|*|*|*|||Volume|5\n1111111|07:00:00|*|*|*|||PlayMessage|a.mp3,50\n",
        "# split in two\n1111100|7:00:0|*|*|*|||1|a.mp3\n"
        "1111111|07:00:00|*|*|*|20200101||PlayMessage|a.mp3,50\n"
        "1110000|06:00:00|*|*|*|||5|5\n0001111|6:0:0|*|*|*|||Volume|5\n",
        "+ 07:00:00              play the message a.mp3                        Mondays to Fridays  (line 2)\n");
    row("what comes", "", "1111111|06:00:00|*|*|*|||Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    every day  (line 1)\n",
        "    ~ master volume: not set -> 5\n");
    row("what goes", "\n1010000|06:00:00|*|*|*|||Gps|0\n", "",
        "- 06:00:00              switch the GPS receiver off                   Mondays and Wednesdays  (line 2)\n",
        "    ~ GPS receiver: off -> not set\n");
    row("what moves", "1111100|08:30:00|*|*|*|||PlayMessage|gong.mp3,70\n",
        "\n1111100|08:45:00|*|*|*|||PlayMessage|gong.mp3,70\n",
        "~ 08:30:00 -> 08:45:00  play the message gong.mp3 at volume 70        Mondays to Fridays  (line 1, then 2)\n");
    row("what is set to another value", "1111111|06:00:00|*|*|*|||Volume|5\n", "1111111|06:00:00|*|*|*|||Volume|6\n",
        "! 06:00:00              set the master volume to 6                    every day  (line 1, then 1)\n"
        "    - soundmanager SetMasterVolume(5.0)\n"
        "    + soundmanager SetMasterVolume(6.0)\n",
        "    ~ master volume: 5 -> 6\n");
    row("another intensity", "1111111|06:00:00|*|*|*|||Light|50\n", "1111111|06:00:00|*|*|*|||Light|60\n",
        "! 06:00:00              switch the lights on with intensity 60        every day  (line 1, then 1)\n"
        "    - lightmanager SetIntensity(50)\n"
        "    + lightmanager SetIntensity(60)\n",
        "    ~ light intensity: 50 -> 60\n");
    row("another volume of a message", "1111111|08:00:00|*|*|*|||PlayMessage|gong.mp3,70\n",
        "1111111|08:00:00|*|*|*|||PlayMessage|gong.mp3,60\n",
        "! 08:00:00              play the message gong.mp3 at volume 60        every day  (line 1, then 1)\n"
        "    - soundmanager SetPlayerVolume(\"file\", 70.0)\n"
        "    + soundmanager SetPlayerVolume(\"file\", 60.0)\n",
        "    ~ volume of the file player: 70 -> 60\n");
    row("several values of one second", "1111111|06:00:00|*|*|*|||Volume|5\n1111111|06:00:00|*|*|*|||Volume|6\n",
        "1111111|06:00:00|*|*|*|||Volume|7\n1111111|06:00:00|*|*|*|||Volume|8\n"
        "1111111|06:00:00|*|*|*|||Gps|1\n",
        "+ 06:00:00              switch the GPS receiver on                    every day  (line 3)\n"
        "! 06:00:00              set the master volume to 7                    every day  (line 1, then 1)\n"
        "    - soundmanager SetMasterVolume(5.0)\n"
        "    + soundmanager SetMasterVolume(7.0)\n"
        "! 06:00:00              set the master volume to 8                    every day  (line 2, then 2)\n"
        "    - soundmanager SetMasterVolume(6.0)\n"
        "    + soundmanager SetMasterVolume(8.0)\n",
        "    ~ GPS receiver: not set -> on\n"
        "    ~ master volume: 6 -> 8\n");
    row("another kind of task", "1111111|06:00:00|*|*|*|||Volume|5\n", "1111111|06:00:00|*|*|*|||Gps|1\n",
        "- 06:00:00              set the master volume to 5                    every day  (line 1)\n"
        "+ 06:00:00              switch the GPS receiver on                    every day  (line 1)\n",
        "    ~ GPS receiver: not set -> on\n"
        "    ~ master volume: 5 -> not set\n");
    row("another value, by chance", "1111111|00:00:01|*|*|*|||Volume|5\n", "1111111|00:00:01|*|*|*|||Volume|6\n",
        "! 00:00:01              set the master volume to 6, by chance         every day  (line 1, then 1)\n"
        "    - soundmanager SetMasterVolume(5.0)\n"
        "    + soundmanager SetMasterVolume(6.0)\n",
        "    ~ master volume: 5, by chance -> 6, by chance\n");
    row("the number of photos", "1111111|06:00:00|*|*|*|||RecordPhoto|5,2\n",
        "1111111|06:00:00|*|*|*|||RecordPhoto|5,3\n",
        "~ 06:00:06 -> 06:00:11  end the series of photos                      every day  (line 1, then 1)\n");
    row("a time that is sent no more", "1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n",
        "1111111|8:30:00|*|*|*|||PlayMessage|gong.mp3\n",
        "! 08:30:00              play the message gong.mp3                     every day  (line 1, then 1)\n"
        "    - soundmanager PlayFile(\"gong.mp3\", \"08:30:00\")\n"
        "    + soundmanager PlayFile(\"gong.mp3\", \"\")\n");
    row("a message that moves", "1111111|08:00:00|*|*|*|||PlayMessage|gong.mp3\n",
        "1111111|09:00:01|*|*|*|||PlayMessage|gong.mp3\n",
        "~ 08:00:00 -> 09:00:01  play the message gong.mp3                     every day  (line 1, then 1)\n");
    row("a message that moves and sends its time no more", "1111111|08:00:00|*|*|*|||PlayMessage|gong.mp3\n",
        "1111111|9:00:00|*|*|*|||PlayMessage|gong.mp3\n",
        "~ 08:00:00 -> 09:00:00  play the message gong.mp3                     every day  (line 1, then 1)\n"
        "    - soundmanager PlayFile(\"gong.mp3\", \"08:00:00\")\n"
        "    + soundmanager PlayFile(\"gong.mp3\", \"\")\n");
    row("the order within a second",
        "1111111|08:00:00|*|*|*|||Gps|1\n1111111|08:00:00|*|*|*|||Volume|10\n"
        "1111111|08:00:00|*|*|*|||Volume|90\n",
        "1111111|08:00:00|*|*|*|||Gps|1\n1111111|08:00:00|*|*|*|||Volume|90\n"
        "1111111|08:00:00|*|*|*|||Volume|10\n",
        "! 08:00:00              another order of 3 starts                     every day\n"
        "    - set the master volume to 10 (line 2), set the master volume to 90 (line 3)\n"
        "    + set the master volume to 90 (line 2), set the master volume to 10 (line 3)\n",
        "    ~ master volume: 90 -> 10\n");
    row("one of two that are the same, and their order",
        "1111111|08:00:00|*|*|*|||Volume|1\n1111111|08:00:00|*|*|*|||Volume|2\n",
        "1111111|08:00:00|*|*|*|||Volume|1\n1111111|08:00:00|*|*|*|||Volume|2\n1111111|08:00:00|*|*|*|||Volume|1\n",
        "+ 08:00:00              set the master volume to 1                    every day  (line 3)\n",
        "    ~ master volume: 2 -> 1\n");
    row("what was in force before", "0000000|06:00:00|8|5|*|||Volume|5\n0000000|21:00:00|10|5|*|||PlayStream|a,7\n", "",
        "",
        "    ~ master volume: 5 -> not set\n"
        "    ~ playing: Stream rtsp://<ServerIp>:a -> nothing\n"
        "    ~ volume of the stream player: 7 -> not set\n");
    row("one more of the same", "1111111|06:00:00|*|*|*|||Volume|5\n",
        "1111111|06:00:00|*|*|*|||Volume|5\n1111111|18:00:00|*|*|*|||Volume|5\n",
        "+ 18:00:00              set the master volume to 5                    every day  (line 2)\n");
    row("a date", "", "0000000|06:00:00|5|6|*|||Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    Wed 2024-06-05  (line 1)\n",
        "    ~ master volume: not set -> 5\n");
    row("two dates", "", "0100000|06:00:00|*|*|*|20240601|20240612|Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    2 dates: 2024-06-04, 2024-06-11  (line "
        "1)\n",
        "    ~ master volume: not set -> 5\n");
    row("some days in a row", "", "1111111|06:00:00|*|*|*|20240601|20240605|Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    every day, 2024-06-01 to 2024-06-05  "
        "(line 1)\n",
        "    ~ master volume: not set -> 5\n");
    row("days of the week, not all the time", "", "1111100|06:00:00|*|*|*|20240527|20240607|Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    Mondays to Fridays, 2024-05-27 to "
        "2024-06-07  (line 1)\n",
        "    ~ master volume: not set -> 5\n");
    row("dates without a rule", "", "0100000|06:00:00|20|*|*|||Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    5 dates: 2024-05-20, 2024-05-21, "
        "2024-05-28, 2024-06-04, 2024-06-11  (line 1)\n",
        "    ~ master volume: not set -> 5\n");
    row("what comes by chance", "", "1111111|00:00:01|*|*|*|||Volume|5\n1111111|00:00:02|*|*|*|||Volume|5\n",
        "+ 00:00:01              set the master volume to 5, by chance         every day  (line 1)\n"
        "+ 00:00:02              set the master volume to 5, by chance         every day  (line 2)\n",
        "    ~ master volume: not set -> 5, by chance\n");
    row("what never starts", "", "1111111|00:00:00|*|*|*|||Volume|5\n", "");
}

void tst_Diff::OnlyRequestsCount()
{
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, after);
    QFETCH(const QString, changes);
    const CommandCall call;
    call.Write(u"old.csv"_s, before);
    call.Write(u"new.csv"_s, after);
    QCOMPARE(call.Run("diff old.csv new.csv --from 2024-05-15 --tz Europe/Rome"),
             (CommandCall::Result{changes.isEmpty() ? 0 : 1, changes, {}}));
}

void tst_Diff::ARejectedLineOfTheNewFileGivesStatus2()
{
    const CommandCall call;
    call.Write(u"old.csv"_s, "1111111|06:00:00|*|*|*|||Volume|5\n");
    call.Write(u"new.csv"_s, "1111111|06:00:00|*|*|*|||volume|5\n");
    QCOMPARE(call.Run("diff old.csv new.csv --from 2024-05-15 --tz UTC"),
             (CommandCall::Result{
                 2,
                 u"- 06:00:00              set the master volume to 5                    every day  (line "
                 "1)\n\n"_s +
                     IN_FORCE + u"    ~ master volume: 5 -> not set\n"_s,
                 u"new.csv:1: error: the daemon leaves the line out: task: no task is called \"volume\"; did you mean "
                 "Volume? Write it to the letter (the daemon logs \"Unknown task (99)\")\n"_s}));
}

void tst_Diff::ARejectedLineOfTheOldFileIsOnlyTold()
{
    const CommandCall call;
    call.Write(u"old.csv"_s, "1111111|06:00:00|*|*|*|||volume|5\n");
    call.Write(u"new.csv"_s, "");
    QCOMPARE(call.Run("diff old.csv new.csv"),
             (CommandCall::Result{0,
                                  {},
                                  u"old.csv:1: error: in the old schedule the daemon leaves the line out: task: no "
                                  u"task is called \"volume\"; did you mean "
                                  "Volume? Write it to the letter (the daemon logs \"Unknown task (99)\")\n"_s}));
}

void tst_Diff::PlaylistsAreThoseOfEachSide_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("changes");

    const auto row = [](const char* name, const char* arguments, const char* changes) {
        QTest::newRow(name) << QString::fromLatin1(arguments) << QString::fromLatin1(changes);
    };
    const char* changed =
        "! 06:00:00              play the playlist morning                     every day  (line 1, then 1)\n"
        "    - intro.mp3, 60 s\n"
        "    + other.mp3, 60 s\n"
        "    + last.mp3, 10 s\n";
    row("beside each file", "", changed);
    row("one folder for both", "--playlists old/playlists", "");
    row("one for each", "--old-playlists old/playlists --new-playlists new/playlists", changed);
    row("the new one's own, before that for both", "--playlists old/playlists --new-playlists new/playlists", changed);
    row("the old one's own, before that for both", "--playlists new/playlists --old-playlists old/playlists", changed);
    row("a playlist without tracks", "--new-playlists empty",
        "- 06:00:00              play the playlist morning                     every day  (line 1)\n");
}

void tst_Diff::PlaylistsAreThoseOfEachSide()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, changes);
    const CommandCall call;
    const QByteArray schedule = "1111111|06:00:00|*|*|*|||PlayPlaylist|morning\n";
    call.Write(u"old/schedule/s.csv"_s, schedule);
    call.Write(u"old/playlists/morning"_s, "intro.mp3;60\n");
    call.Write(u"new/schedule/s.csv"_s, schedule);
    call.Write(u"new/playlists/morning"_s, "other.mp3;60\nlast.mp3;10\n");
    call.Write(u"empty/morning"_s, "");
    const CommandCall::Result result =
        call.Run(QStringList{u"diff"_s, u"old/schedule/s.csv"_s, u"new/schedule/s.csv"_s} +
                 arguments.split(u' ', Qt::SkipEmptyParts));
    QCOMPARE(result.output, changes);
    QCOMPARE(result.status, !result.errors.isEmpty() ? 2 : changes.isEmpty() ? 0 : 1);
}

OZNA_CASE(Diff, tst_Diff)
#include "tst_Diff.moc"
