#include "CommandCall.h"
#include "Suite.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Which starts come, go or move, whole.
class tst_Diff final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void OnlyStartsCount_data();
    void OnlyStartsCount();
    void ARejectedLineOfTheNewFileGivesStatus2();
    void ARejectedLineOfTheOldFileIsOnlyTold();
    void PlaylistsAreThoseBesideEachFile();
};

void tst_Diff::OnlyStartsCount_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("changes");

    const auto row = [](const char* name, const char* before, const char* after, const char* changes) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(after) << QString::fromLatin1(changes);
    };
    row("the same", "1111111|06:00:00|*|*|*|||Volume|5\n", "1111111|06:00:00|*|*|*|||Volume|5\n", "");
    row("other lines, the same starts",
        "1111111|06:00:00|*|*|*|||Volume|5\n1111111|07:00:00|*|*|*|||PlayMessage|a.mp3,50\n",
        "# split in two\n1111100|7:00:0|*|*|*|||1|a.mp3\n"
        "1111111|07:00:00|*|*|*|20200101||PlayMessage|a.mp3,50\n"
        "1110000|06:00:00|*|*|*|||5|5\n0001111|6:0:0|*|*|*|||Volume|5\n",
        "+ 07:00:00              play the message a.mp3                        Mondays to Fridays  (line 2)\n");
    row("what comes", "", "1111111|06:00:00|*|*|*|||Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    every day  (line 1)\n");
    row("what goes", "\n1010000|06:00:00|*|*|*|||Gps|0\n", "",
        "- 06:00:00              switch the GPS receiver off                   Mondays and Wednesdays  (line 2)\n");
    row("what moves", "1111100|08:30:00|*|*|*|||PlayMessage|gong.mp3,70\n",
        "\n1111100|08:45:00|*|*|*|||PlayMessage|gong.mp3,70\n",
        "~ 08:30:00 -> 08:45:00  play the message gong.mp3 at volume 70        Mondays to Fridays  (line 1, then 2)\n");
    row("what is set to another value", "1111111|06:00:00|*|*|*|||Volume|5\n", "1111111|06:00:00|*|*|*|||Volume|6\n",
        "- 06:00:00              set the master volume to 5                    every day  (line 1)\n"
        "+ 06:00:00              set the master volume to 6                    every day  (line 1)\n");
    row("the number of photos", "1111111|06:00:00|*|*|*|||RecordPhoto|5,2\n",
        "1111111|06:00:00|*|*|*|||RecordPhoto|5,3\n",
        "- 06:00:00              take a photo every 5 s, 2 in all              every day  (line 1)\n"
        "+ 06:00:00              take a photo every 5 s, 3 in all              every day  (line 1)\n");
    row("a time that is sent no more", "1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n",
        "1111111|8:30:00|*|*|*|||PlayMessage|gong.mp3\n", "");
    row("one more of the same", "1111111|06:00:00|*|*|*|||Volume|5\n",
        "1111111|06:00:00|*|*|*|||Volume|5\n1111111|18:00:00|*|*|*|||Volume|5\n",
        "+ 18:00:00              set the master volume to 5                    every day  (line 2)\n");
    row("a date", "", "0000000|06:00:00|5|6|*|||Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    Wed 2024-06-05  (line 1)\n");
    row("two dates", "", "0100000|06:00:00|*|*|*|20240601|20240612|Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    2 dates: 2024-06-04, 2024-06-11  (line "
        "1)\n");
    row("some days in a row", "", "1111111|06:00:00|*|*|*|20240601|20240605|Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    every day, 2024-06-01 to 2024-06-05  "
        "(line 1)\n");
    row("days of the week, not all the time", "", "1111100|06:00:00|*|*|*|20240527|20240607|Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    Mondays to Fridays, 2024-05-27 to "
        "2024-06-07  (line 1)\n");
    row("dates without a rule", "", "0100000|06:00:00|20|*|*|||Volume|5\n",
        "+ 06:00:00              set the master volume to 5                    5 dates: 2024-05-20, 2024-05-21, "
        "2024-05-28, 2024-06-04, 2024-06-11  (line 1)\n");
    row("what comes by chance", "", "1111111|00:00:01|*|*|*|||Volume|5\n1111111|00:00:02|*|*|*|||Volume|5\n",
        "+ 00:00:01              Volume|5, by chance                           every day  (line 1)\n"
        "+ 00:00:02              Volume|5, by chance                           every day  (line 2)\n");
    row("what never starts", "", "1111111|00:00:00|*|*|*|||Volume|5\n", "");
}

void tst_Diff::OnlyStartsCount()
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
    QCOMPARE(
        call.Run("diff old.csv new.csv"),
        (CommandCall::Result{2,
                             u"- 06:00:00              set the master volume to 5                    every day  (line "
                             "1)\n"_s,
                             u"new.csv:1: error: Unknown task (99): the daemon leaves the line out\n"_s}));
}

void tst_Diff::ARejectedLineOfTheOldFileIsOnlyTold()
{
    const CommandCall call;
    call.Write(u"old.csv"_s, "1111111|06:00:00|*|*|*|||volume|5\n");
    call.Write(u"new.csv"_s, "");
    QCOMPARE(call.Run("diff old.csv new.csv"),
             (CommandCall::Result{0, {}, u"old.csv:1: error: Unknown task (99): the daemon leaves the line out\n"_s}));
}

void tst_Diff::PlaylistsAreThoseBesideEachFile()
{
    const CommandCall call;
    const QByteArray schedule = "1111111|06:00:00|*|*|*|||PlayPlaylist|morning\n";
    call.Write(u"old/schedule/s.csv"_s, schedule);
    call.Write(u"old/playlists/morning"_s, "intro.mp3;60\n");
    call.Write(u"new/schedule/s.csv"_s, schedule);
    call.Write(u"new/playlists/morning"_s, "other.mp3;60\n");
    const QStringList arguments{u"diff"_s, u"old/schedule/s.csv"_s, u"new/schedule/s.csv"_s};
    CommandCall::Result result = call.Run(arguments);
    QCOMPARE(result.errors + result.output, QString());
    QCOMPARE(result.status, 0);

    call.Write(u"new/playlists/morning"_s, "");
    result = call.Run(arguments);
    QCOMPARE(result.output, u"- 06:00:00              play the playlist morning                     every day  (line "
                            "1)\n"_s);
    QCOMPARE(result.status, 2);
}

OZNA_CASE(Diff, tst_Diff)
#include "tst_Diff.moc"
