#include "CommandCall.h"
#include "RandomSchedule.h"
#include "Suite.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

// The next starts as a timetable, whole.
class tst_Next final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void TheNextStartsComeInOrder_data();
    void TheNextStartsComeInOrder();
    void ALineHasEightyColumnsAtMost();
    void OfALatePlaylistTheNameIsCutAndNotTheTrack();
    void JsonIsLikeThatOfARehearsal_data();
    void JsonIsLikeThatOfARehearsal();
    void JsonTellsOfIdleLinesWhatTheTableTells();
    void TenStartsAreShownUnlessTold();
    void ItBeginsNowUnlessTold();
    void ARejectedLineIsToldAndGivesStatus2();
    void ANumberThatIsNoneIsRefused();
};

void tst_Next::TheNextStartsComeInOrder_data()
{
    QTest::addColumn<QByteArray>("schedule");
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("table");

    QTest::newRow("two lines") << QByteArray("1111100|08:30:00|*|*|*|||PlayMessage|gong.mp3\n"
                                             "1111111|22:15:30|*|*|*|||Light|0\n")
                               << "2024-05-17T05:10" << 4
                               << "Fri 2024-05-17 08:30:00  in 3 h 20 min   PlayMessage   gong.mp3       line 1\n"
                                  "Fri 2024-05-17 22:15:30  in 17 h 5 min   Light         off            line 2\n"
                                  "Sat 2024-05-18 22:15:30  in 1 d 17 h     Light         off            line 2\n"
                                  "Sun 2024-05-19 22:15:30  in 2 d 17 h     Light         off            line 2\n";
    QTest::newRow("asked for already, and not begun")
        << QByteArray("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n") << "2024-05-17T08:29:55" << 1
        << "Fri 2024-05-17 08:30:00  in 5 s          PlayMessage   gong.mp3       line 1\n";
    QTest::newRow("begun already") << QByteArray("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n")
                                   << "2024-05-17T08:30:01" << 1
                                   << "Sat 2024-05-18 08:30:00  in 23 h 59 min  PlayMessage   gong.mp3       line 1\n";
    QTest::newRow("what is prepared and what is not, over midnight in UTC")
        << QByteArray("1111111|02:00:05|*|*|*|||PlayMessage|gong.mp3\n1111111|02:00:01|*|*|*|||Volume|5\n")
        << "2024-05-17" << 1 << "Fri 2024-05-17 02:00:01  in 2 h          Volume        5.0            line 2\n";
    QTest::newRow("the same time twice")
        << QByteArray("1111111|02:30:00|*|*|*|||Volume|5\n") << "2024-10-27" << 2
        << "Sun 2024-10-27 02:30:00  in 2 h 30 min   Volume        5.0            line 1\n"
           "Sun 2024-10-27 02:30:00  in 3 h 30 min   Volume        5.0            line 1\n"
           "                         repeated\n";
    QTest::newRow("fewer") << QByteArray("0000000|18:00:00|25|12|*|||Volume|5\n") << "2024-05-15T05:10" << 10
                           << "Wed 2024-12-25 18:00:00  in 224 d 13 h   Volume        5.0            line 1\n"
                              "Thu 2025-12-25 18:00:00  in 589 d 13 h   Volume        5.0            line 1\n"
                              "only 2 starts from Wed 2024-05-15 05:10:00 to Fri 2026-05-15 05:10:00\n";
    QTest::newRow("a single one") << QByteArray("0000000|18:00:00|25|12|2024|||Volume|5\n") << "2024-12-25T17:00" << 10
                                  << "Wed 2024-12-25 18:00:00  in 1 h          Volume        5.0            line 1\n"
                                     "only 1 start from Wed 2024-12-25 17:00:00 to Fri 2026-12-25 17:00:00\n";
    QTest::newRow("none, as midnight never starts")
        << QByteArray("1111111|00:00:00|*|*|*|||Volume|5\n") << "2024-05-15" << 10
        << "no start from Wed 2024-05-15 00:00:00 to Fri 2026-05-15 00:00:00\nline 1 never starts\n";
    QTest::newRow("none, as a playlist that has played is not joined late")
        << QByteArray("1111111|00:00:00|*|*|*|||PlayPlaylist|night\n") << "2024-05-15" << 10
        << "no start from Wed 2024-05-15 00:00:00 to Fri 2026-05-15 00:00:00\n"
           "line 1 starts at midnight, once after a load, and then never again\n";
    QTest::newRow("a playlist at midnight that has not played yet")
        << QByteArray("0000000|00:00:00|15|5|2024|||PlayPlaylist|night\n") << "2024-05-14" << 1
        << "Thu 2024-05-16 00:00:00  in 2 d          PlayPlaylist  night          line 1\n"
           "line 1 starts at midnight, once after a load, and then never again\n";
    QTest::newRow("none, as it has played a year ago")
        << QByteArray("0000000|00:00:00|15|5|*|||PlayPlaylist|night\n") << "2024-05-14" << 1
        << "no start from Tue 2024-05-14 00:00:00 to Thu 2026-05-14 00:00:00\n"
           "line 1 starts at midnight, once after a load, and then never again\n";
    QTest::newRow("a start at another moment than its own")
        << QByteArray("0000100|23:59:00|*|*|*|20240517|20240517|PlayPlaylist|night\n") << "2024-05-16" << 1
        << "Thu 2024-05-16 23:59:00  in 1 d          PlayPlaylist  night          line 1\n"
           "                         from track 2, starts Fri 2024-05-17 00:00:00, late\n";
    QTest::newRow("what is too long for a line is cut")
        << QByteArray("1111111|08:30:00|*|*|*|||PlayMessage|a message for all who are in the building.mp3\n"
                      "1111111|09:30:00|*|*|*|||19|1,1\n")
        << "2024-05-17" << 2
        << "Fri 2024-05-17 08:30:00  in 8 h 30 min   PlayMessage   a message f... line 1\n"
           "Fri 2024-05-17 09:30:00  in 9 h 30 min   RequestPddAction 1, true     line 2\n";
    QTest::newRow("by chance")
        << QByteArray("1111111|00:00:01|*|*|*|||Volume|5\n1111111|00:00:02|*|*|*|||Volume|6\n") << "2024-05-14T20:00"
        << 2
        << "Wed 2024-05-15 00:00:01  in 4 h          Volume        5.0            line 1\n                         by "
           "chance\n"
           "Wed 2024-05-15 00:00:02  in 4 h          Volume        6.0            line 2\n                         by "
           "chance\n"
           "line 1 starts by chance, in 1 of 3 cases, depending on when the daemon was started\n"
           "line 2 starts by chance, in 2 of 3 cases, depending on when the daemon was started\n";
    QTest::newRow("no lines") << QByteArray() << "2024-05-15" << 10
                              << "no start from Wed 2024-05-15 00:00:00 to Fri 2026-05-15 00:00:00\n";
}

void tst_Next::TheNextStartsComeInOrder()
{
    QFETCH(const QByteArray, schedule);
    QFETCH(const QString, from);
    QFETCH(const int, count);
    QFETCH(const QString, table);
    const CommandCall call;
    call.Write(u"s.csv"_s, schedule);
    call.Write(u"night"_s, "first.mp3;60\nsecond.mp3;60\n");
    QCOMPARE(call.Run({u"next"_s, u"s.csv"_s, u"--from"_s, from, u"-n"_s, QString::number(count), u"--tz"_s,
                       u"Europe/Rome"_s}),
             (CommandCall::Result{0, table, {}}));
}

// The clocks are put forward over its start.
void tst_Next::OfALatePlaylistTheNameIsCutAndNotTheTrack()
{
    const CommandCall call;
    const QByteArray name = "songs of spring for the whole house";
    call.Write(QString::fromLatin1(name), "first.mp3;60\nsecond.mp3;60\n");
    call.Write(u"a"_s, "first.mp3;60\nsecond.mp3;60\n");
    call.Write(u"s.csv"_s,
               "0000000|02:59:30|30|3|2025|||PlayPlaylist|" + name + "\n0000000|02:59:31|30|3|2025|||PlayPlaylist|a\n");
    const QStringList rows = call.Run("next s.csv --from 2025-03-30 -n 2 --tz Europe/Rome").output.split(u'\n');
    QVERIFY2(rows[0].endsWith("  PlayPlaylist  songs of sp... line 1"_L1), qPrintable(rows[0]));
    QCOMPARE(rows[1].trimmed(), u"from track 2, starts Sun 2025-03-30 03:00:00, late"_s);
    QVERIFY2(rows[2].endsWith("  PlayPlaylist  a from track 2 line 2"_L1), qPrintable(rows[2]));
    QCOMPARE(rows[3].trimmed(), u"starts Sun 2025-03-30 03:00:00, late"_s);
}

void tst_Next::ALineHasEightyColumnsAtMost()
{
    const CommandCall call;
    const QByteArray schedule = "0000000|12:30:00|25|12|*|||PlayMessage|a message for all of the building.mp3\n"
                                "0000000|22:30:00|25|12|*|||19|1,1\n";
    call.Write(u"s.csv"_s, QByteArray(99996, '\n') + schedule);
    const QStringList rows = call.Run("next s.csv --from 2024-01-01T01:10:10 --tz UTC -n 4").output.split(u'\n');
    QCOMPARE(rows.size(), 5);
    for (const QString& row : rows)
        QVERIFY2(row.size() <= 80, qPrintable(row));
    QVERIFY2(rows[3].endsWith(" line 99998"_L1), qPrintable(rows[3]));
}

void tst_Next::JsonIsLikeThatOfARehearsal_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 0; seed < 10; ++seed)
        QTest::addRow("%d", seed) << seed;
}

void tst_Next::JsonIsLikeThatOfARehearsal()
{
    QFETCH(const int, seed);
    const RandomSchedule schedule(static_cast<std::uint32_t>(seed), 50);
    const CommandCall call(schedule.Folder());
    const QDateTime from = QDateTime::fromMSecsSinceEpoch(schedule.Start_ms() / 1000 * 1000, Qt::UTC);
    const QStringList common{u"schedule.csv"_s, u"--tz"_s, u"UTC"_s, u"--json"_s, u"--from"_s};
    const QString now = from.toString(u"yyyy-MM-ddTHH:mm:ss"_s);
    const auto events = [&](const QStringList& arguments) {
        return QJsonDocument::fromJson(call.Run(arguments).output.toUtf8())[u"events"_s].toArray();
    };
    // Some days earlier and later, so that nothing is cut off.
    const QString earlier = from.addDays(-2).toString(u"yyyy-MM-ddTHH:mm:ss"_s);
    std::vector<QJsonObject> starts;
    for (const QJsonValue event :
         events(QStringList(u"rehearse"_s) + common + QStringList{earlier, u"--days"_s, u"9"_s}))
    {
        const QDateTime start = QDateTime::fromString(event[u"start"_s].toString(), Qt::ISODate);
        if (event[u"kind"_s] == "start"_L1 && start >= from)
            starts.push_back(event.toObject());
    }
    std::ranges::stable_sort(starts, {}, [](const QJsonObject& event) { return event[u"start"_s].toString(); });
    const QJsonArray next = events(QStringList(u"next"_s) + common + QStringList{now, u"-n"_s, u"20"_s});
    QVERIFY(!next.isEmpty());
    // What ends later than one of them looks has an end in the other only, and what began earlier is marked.
    const auto plain = [](QJsonObject event) {
        for (const QString& name : {u"end"_s, u"stoppedByLine"_s, u"marks"_s})
            event.remove(name);
        return event;
    };
    for (qsizetype i = 0; i < std::min<qsizetype>(next.size(), std::ssize(starts)); ++i)
        QCOMPARE(plain(next[i].toObject()), plain(starts[static_cast<size_t>(i)]));
}

void tst_Next::JsonTellsOfIdleLinesWhatTheTableTells()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "1111111|06:00:00|*|*|*|||Volume|5\n"
                           "1111111|00:00:00|*|*|*|||Volume|6\n"
                           "1111111|22:00:00|*|*|*|||Volume|7\n");
    const QString json = call.Run("next s.csv --from 2024-05-15 --tz UTC -n 1 --json").output;
    const QJsonArray idle = QJsonDocument::fromJson(json.toUtf8())[u"idle"_s].toArray();
    QCOMPARE(idle, (QJsonArray{QJsonObject{{u"line"_s, 2}, {u"reason"_s, u"never starts"_s}}}));
}

void tst_Next::TenStartsAreShownUnlessTold()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "1111111|06:00:00|*|*|*|||Volume|5\n");
    const CommandCall::Result result = call.Run("next s.csv --from 2024-05-15");
    QCOMPARE(result.output.count(u'\n'), 10);
}

void tst_Next::ItBeginsNowUnlessTold()
{
    const CommandCall call;
    const QDateTime due = QDateTime::currentDateTimeUtc().addSecs(7200);
    call.Write(u"s.csv"_s, "1111111|" + due.toString(u"HH:mm:ss"_s).toLatin1() + "|*|*|*|||Volume|5\n");
    const CommandCall::Result result = call.Run("next s.csv -n 1 --tz UTC");
    const QString moment = QLocale::c().toString(due, u"ddd yyyy-MM-dd HH:mm:ss"_s);
    QVERIFY2(result.output.startsWith(moment + u"  in 2 h "_s) ||
                 result.output.startsWith(moment + u"  in 1 h 59 min "_s),
             qPrintable(result.output));
}

void tst_Next::ARejectedLineIsToldAndGivesStatus2()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "1111111|06:00:00|*|*|*|||Volume|5\nnonsense\n");
    const CommandCall::Result result = call.Run("next s.csv --from 2024-05-15 -n 1");
    QCOMPARE(
        result.errors,
        u"s.csv:2: error: the daemon leaves the line out: line: has 1 of the 8 fields that a line needs; write "
        u"days|start time|day|month|year|from|to|task, and "
        "|parameters where there are any (the daemon logs \"Wrong action fields (1 found, at least 8 expected)\")\n"_s);
    QCOMPARE(result.output.count(u'\n'), 1);
    QCOMPARE(result.status, 2);

    call.Write(u"a%2%3.csv"_s, "nonsense\n");
    QVERIFY(call.Run({u"next"_s, u"a%2%3.csv"_s})
                .errors.startsWith("a%2%3.csv:1: error: the daemon leaves the line out: line: has 1 of "_L1));
}

void tst_Next::ANumberThatIsNoneIsRefused()
{
    const CommandCall call;
    call.Write(u"s.csv"_s, "");
    const CommandCall::Result result = call.Run("next s.csv -n 0");
    QCOMPARE(result.errors, u"ozna-schedule: -n: a number from 1 to 10000 is expected, not \"0\"\n"_s);
    QCOMPARE(result.status, 3);
}

OZNA_CASE(Next, tst_Next)
#include "tst_Next.moc"
