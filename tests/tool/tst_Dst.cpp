#include "CommandCall.h"
#include "Suite.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What becomes of starts where the clocks change, whole.
class tst_Dst final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void TheClocksChange_data();
    void TheClocksChange();
    void APlaylistIsJoinedLateUnlessItHasPlayedBefore();
    void APlaylistInTheFirstSecondsThatAreLeftOutIsAskedForBeforeThem();
    void ARejectedLineIsToldAndGivesStatus2();
};

void tst_Dst::TheClocksChange_data()
{
    QTest::addColumn<QByteArray>("schedule");
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QString>("text");

    const auto row = [](const char* name, const char* schedule, const char* zone, const char* text) {
        QTest::newRow(name) << QByteArray(schedule) << QString::fromLatin1(zone) << QString::fromLatin1(text);
    };
    constexpr const char* NOTHING =
        "From Wed 2024-05-15 to Thu 2025-05-15 no start is touched by a change of the clocks.\n";

    row("an hour comes twice, and is left out", "1111111|02:30:00|*|*|*|||Volume|5\n", "Europe/Rome",
        "Sun 2024-10-27: at 03:00:00 the clocks are put back to 02:00:00\n"
        "  line 1, 02:30:00, set the master volume to 5: is asked for twice: at 02:30:00+02:00 and 02:30:00+01:00\n"
        "Sun 2025-03-30: at 02:00:00 the clocks are put forward to 03:00:00\n"
        "  line 1, 02:30:00, set the master volume to 5: does not start: the clocks are put forward over 02:30:00\n");
    row("a message is asked for ahead", "1111111|02:30:00|*|*|*|||PlayMessage|a.mp3\n", "Europe/Rome",
        "Sun 2024-10-27: at 03:00:00 the clocks are put back to 02:00:00\n"
        "  line 1, 02:30:00, play the message a.mp3: is asked for twice: at 02:29:52+02:00 and 02:29:52+01:00\n"
        "Sun 2025-03-30: at 02:00:00 the clocks are put forward to 03:00:00\n"
        "  line 1, 02:30:00, play the message a.mp3: does not start: the clocks are put forward over 02:30:00\n");
    row("a message right after the hour is asked for early as well", "1111111|03:00:05|*|*|*|||PlayMessage|a.mp3\n",
        "Europe/Rome",
        "Sun 2024-10-27: at 03:00:00 the clocks are put back to 02:00:00\n"
        "  line 1, 03:00:05, play the message a.mp3: is asked for twice: at 02:59:57+02:00 and 02:59:57+01:00\n");
    row("a message in the first seconds that are left out is asked for before them",
        "1111111|02:00:05|*|*|*|||PlayMessage|a.mp3\n1111111|02:00:07|*|*|*|||PlayMessage|b.mp3\n"
        "1111111|02:00:08|*|*|*|||PlayMessage|c.mp3\n1111111|01:59:59|*|*|*|||PlayMessage|d.mp3\n"
        "1111111|03:00:05|*|*|*||20240601|PlayMessage|e.mp3\n",
        "Europe/Rome",
        "Sun 2024-10-27: at 03:00:00 the clocks are put back to 02:00:00\n"
        "  line 1, 02:00:05, play the message a.mp3: is asked for twice: at 01:59:57+02:00 and 02:00:00+01:00\n"
        "  line 2, 02:00:07, play the message b.mp3: is asked for twice: at 01:59:59+02:00 and 02:00:00+01:00\n"
        "  line 3, 02:00:08, play the message c.mp3: is asked for twice: at 02:00:00+02:00 and 02:00:00+01:00\n"
        "Sun 2025-03-30: at 02:00:00 the clocks are put forward to 03:00:00\n"
        "  line 1, 02:00:05, play the message a.mp3: is asked for once: at 01:59:57+01:00; it is to begin at "
        "02:00:05, which does not come\n"
        "  line 2, 02:00:07, play the message b.mp3: is asked for once: at 01:59:59+01:00; it is to begin at "
        "02:00:07, which does not come\n"
        "  line 3, 02:00:08, play the message c.mp3: does not start: the clocks are put forward over 02:00:08\n");
    row("a message at the change is asked for before it", "1111111|02:00:00|*|*|*|||PlayMessage|a.mp3\n", "Europe/Rome",
        "Sun 2024-10-27: at 03:00:00 the clocks are put back to 02:00:00\n"
        "  line 1, 02:00:00, play the message a.mp3: is asked for once: at 01:59:52+02:00\n"
        "Sun 2025-03-30: at 02:00:00 the clocks are put forward to 03:00:00\n"
        "  line 1, 02:00:00, play the message a.mp3: is asked for once: at 01:59:52+01:00; it is to begin at "
        "02:00:00, which does not come\n");
    row("half an hour on an island", "1111111|01:45:00|*|*|*|||Volume|5\n1111111|02:15:00|*|*|*|||Volume|6\n",
        "Australia/Lord_Howe",
        "Sun 2024-10-06: at 02:00:00 the clocks are put forward to 02:30:00\n"
        "  line 2, 02:15:00, set the master volume to 6: does not start: the clocks are put forward over 02:15:00\n"
        "Sun 2025-04-06: at 02:00:00 the clocks are put back to 01:30:00\n"
        "  line 1, 01:45:00, set the master volume to 5: is asked for twice: at 01:45:00+11:00 and 01:45:00+10:30\n");
    row("not due that night", "1111110|02:30:00|*|*|*|||Volume|5\n", "Europe/Rome", NOTHING);
    row("away from the hour", "1111111|03:30:00|*|*|*|||Volume|5\n1111111|01:30:00|*|*|*|||Volume|6\n", "Europe/Rome",
        NOTHING);
    row("a zone without changes", "1111111|02:30:00|*|*|*|||Volume|5\n0000000|00:30:00|25|12|*|||Volume|5\n", "UTC",
        NOTHING);
    row("a spot date before midnight in UTC", "0000000|00:30:00|25|12|*|||Volume|5\n", "Europe/Rome",
        "Spot dates that come on another day, as they go by UTC:\n"
        "  line 1, 00:30:00, set the master volume to 5: starts on Thu 2024-12-26, when it is Wed 2024-12-25 in UTC\n");
    row("a spot date of every month", "0000000|00:30:00|25|*|*|||Volume|5\n", "Europe/Rome",
        "Spot dates that come on another day, as they go by UTC:\n"
        "  line 1, 00:30:00, set the master volume to 5: starts on Sun 2024-05-26, when it is Sat 2024-05-25 in UTC, "
        "and so on 11 more dates\n");
    row("a spot date after midnight in UTC", "0000000|22:30:00|25|12|*|||Volume|5\n", "America/New_York",
        "Spot dates that come on another day, as they go by UTC:\n"
        "  line 1, 22:30:00, set the master volume to 5: starts on Tue 2024-12-24, when it is Wed 2024-12-25 in UTC\n");
    row("a whole month by spot ends a day late", "0000000|00:30:00|*|12|*|||Volume|5\n", "Europe/Rome",
        "Spot dates that come on another day, as they go by UTC:\n"
        "  line 1, 00:30:00, set the master volume to 5: starts on Wed 2025-01-01, when it is Tue 2024-12-31 in UTC\n");
    row("what never starts, or by chance",
        "1111111|00:00:00|*|*|*|||Volume|1\n1111111|24:00:00|*|*|*|||Volume|2\n0000000|08:00:00|31|2|*|||Volume|3\n"
        "1111111|00:00:01|*|*|*|||Volume|4\n1111111|08:00:00|*|*|*|||Volume|5 # later\n",
        "Europe/Rome",
        "From Wed 2024-05-15 to Thu 2025-05-15 no start is touched by a change of the clocks.\n"
        "Lines that do not always start at their time:\n"
        "  line 1, 00:00:00, set the master volume to 1: never starts\n"
        "  line 2, 24:00:00, set the master volume to 2: never starts\n"
        "  line 3, 08:00:00, set the master volume to 3: is never due: there is no such spot date\n"
        "  line 4, 00:00:01, set the master volume to 4: starts by chance, in 1 of 3 cases, depending on when the "
        "daemon was started\n"
        "  line 5 is a comment, as there is a \"#\" in it\n");
    row("the first seconds after a change", "1111111|03:00:02|*|*|*|||Volume|1\n1111111|02:00:01|*|*|*|||Volume|2\n",
        "Europe/Rome",
        "Sun 2024-10-27: at 03:00:00 the clocks are put back to 02:00:00\n"
        "  line 2, 02:00:01, set the master volume to 2: is asked for twice: at 02:00:01+02:00 and 02:00:01+01:00; "
        "the second time by chance, in 1 of 3 cases, depending on when the daemon was started\n"
        "Sun 2025-03-30: at 02:00:00 the clocks are put forward to 03:00:00\n"
        "  line 1, 03:00:02, set the master volume to 1: is asked for once: at 03:00:02+02:00; by chance, in 2 of 3 "
        "cases, depending on when the daemon was started\n"
        "  line 2, 02:00:01, set the master volume to 2: does not start: the clocks are put forward over 02:00:01\n");
    row("a spot date by day", "0000000|12:00:00|25|12|*|||Volume|5\n", "Europe/Rome", NOTHING);
}

void tst_Dst::TheClocksChange()
{
    QFETCH(const QByteArray, schedule);
    QFETCH(const QString, zone);
    QFETCH(const QString, text);
    const CommandCall call;
    call.Write(u"s.csv"_s, schedule);
    QCOMPARE(call.Run({u"dst"_s, u"s.csv"_s, u"--from"_s, u"2024-05-15"_s, u"--years"_s, u"1"_s, u"--tz"_s, zone}),
             (CommandCall::Result{0, text, {}}));
}

void tst_Dst::APlaylistIsJoinedLateUnlessItHasPlayedBefore()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "0000000|02:59:30|30|3|2025|||PlayPlaylist|once\n"
                           "0000001|02:59:30|*|*|*|||PlayPlaylist|often\n");
    call.Write(u"once"_s, "first.mp3;60\nsecond.mp3;60\n");
    call.Write(u"often"_s, "first.mp3;60\nsecond.mp3;60\n");
    const CommandCall::Result result = call.Run("dst s.csv --from 2025-03-01 --years 1 --tz Europe/Rome");
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output,
             u"Sun 2025-03-30: at 02:00:00 the clocks are put forward to 03:00:00\n"
             "  line 1, 02:59:30, play the playlist once: is asked for late: at 03:00:00+02:00\n"
             "  line 2, 02:59:30, play the playlist often: does not start: the clocks are put forward over "
             "02:59:30\n"
             "Sun 2025-10-26: at 03:00:00 the clocks are put back to 02:00:00\n"
             "  line 2, 02:59:30, play the playlist often: is asked for twice: at 02:59:22+02:00 and "
             "02:59:22+01:00\n"_s);
}

void tst_Dst::APlaylistInTheFirstSecondsThatAreLeftOutIsAskedForBeforeThem()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "1111111|02:00:05|*|*|*|||PlayPlaylist|often\n");
    call.Write(u"often"_s, "first.mp3;60\nsecond.mp3;60\n");
    const CommandCall::Result result = call.Run("dst s.csv --from 2027-03-01 --years 1 --tz Europe/Rome");
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output,
             u"Sun 2027-03-28: at 02:00:00 the clocks are put forward to 03:00:00\n"
             "  line 1, 02:00:05, play the playlist often: is asked for once: at 01:59:57+01:00; it is to begin at "
             "02:00:05, which does not come\n"
             "Sun 2027-10-31: at 03:00:00 the clocks are put back to 02:00:00\n"
             "  line 1, 02:00:05, play the playlist often: is asked for twice: at 01:59:57+02:00 and "
             "02:00:00+01:00\n"_s);
    const QString night = call.Run("rehearse s.csv --from 2027-03-28 --days 1 --tz Europe/Rome").output;
    QVERIFY2(night.contains(u"PlayPlaylist(\"often\", \"\", 1, \"02:00:05\", false)"_s), qPrintable(night));
}

void tst_Dst::ARejectedLineIsToldAndGivesStatus2()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "nonsense\n");
    const CommandCall::Result result = call.Run("dst s.csv --from 2024-05-15 --tz UTC");
    QCOMPARE(
        result.errors,
        u"s.csv:1: error: the daemon leaves the line out: line: has 1 of the 8 fields that a line needs; write "
        u"days|start time|day|month|year|from|to|task, and "
        "|parameters where there are any (the daemon logs \"Wrong action fields (1 found, at least 8 expected)\")\n"_s);
    QCOMPARE(result.output,
             u"From Wed 2024-05-15 to Tue 2029-05-15 no start is touched by a change of the clocks.\n"_s);
    QCOMPARE(result.status, 2);
}

OZNA_CASE(Dst, tst_Dst)
#include "tst_Dst.moc"
