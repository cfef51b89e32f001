#include "CommandCall.h"
#include "Suite.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// The words of every command.
constexpr const char* NEVER = "never starts";
constexpr const char* AT_A_LOAD =
    "starts only after a load: at once on one of its days, or else at the next midnight that begins one";
constexpr const char* ONCE = "starts at midnight, once after a load, and then never again";
constexpr const char* BEFORE = "is asked for on the evening before";
constexpr const char* BEFORE_AND_ONCE = "is asked for on the evening before, and at midnight once after a load";
constexpr const char* IN_1 = "starts by chance, in 1 of 3 cases, depending on when the daemon was started";
constexpr const char* IN_2 = "starts by chance, in 2 of 3 cases, depending on when the daemon was started";
constexpr const char* ALWAYS_ONCE = "; the first time after a load it always starts";

// "16T23:59:52 start", "17T00:00:01 start, by chance", of a rehearsal as a program reads it; forced and repeated ones
// are told as such.
QStringList Moments(const QByteArray& json)
{
    QStringList moments;
    for (const QJsonValue event : QJsonDocument::fromJson(json)[u"events"_s].toArray())
    {
        const QString marks = event[u"marks"_s].toString();
        const QString kind = event[u"kind"_s].toString();
        if (kind != u"missed"_s && !marks.contains(u"playing"_s))
            moments.append(event[u"time"_s].toString().mid(8, 11) + u' ' + kind +
                           (marks.isEmpty() ? marks : u", "_s + marks));
    }
    return moments;
}

} // namespace

// All commands say the same of a time at which an entry does not start, and the engine does it.
class tst_OddStarts final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void EveryCommandSaysTheSame_data();
    void EveryCommandSaysTheSame();
    void WithoutTheTracksAPlaylistMayBeFoundAtMidnight_data();
    void WithoutTheTracksAPlaylistMayBeFoundAtMidnight();
};

void tst_OddStarts::EveryCommandSaysTheSame_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QStringList>("afterLoad"); // loaded at noon of the 15th, until noon of the 17th
    QTest::addColumn<QStringList>("forLong");   // what comes on the 16th and the 17th to a daemon that has run for long

    const auto row = [](const char* time, const char* task, const QByteArray& words, const QStringList& afterLoad,
                        const QStringList& forLong) {
        const QByteArray line = QByteArray("1111111|") + time + "|*|*|*|||" + task;
        QTest::newRow(line.constData()) << line << QString::fromLatin1(words) << afterLoad << forLong;
    };
    constexpr const char* VOLUME = "Volume|5";
    constexpr const char* MESSAGE = "PlayMessage|gong.mp3";
    constexpr const char* SINGLE = "PlayPlaylist|single";
    constexpr const char* LONG = "PlayPlaylist|long";
    constexpr const char* LIGHT = "Light|5";
    constexpr const char* RADIO = "PlayRadioFm|98.5";

    for (const char* task : {VOLUME, MESSAGE, SINGLE})
    {
        row("00:00:00", task, NEVER, {}, {});
        row("25:00:00", task, NEVER, {}, {});
        row("-1:00:00", task, NEVER, {}, {});
    }
    row("24:00:00", VOLUME, NEVER, {}, {});
    for (const char* task : {LIGHT, RADIO})
    {
        for (const char* time : {"00:00:00", "24:00:00", "25:00:00", "-1:00:00"})
            row(time, task, AT_A_LOAD, {u"15T12:00:03 start, forced"_s}, {});
    }
    for (const char* time : {"00:00:00", "25:00:00", "-1:00:00"})
        row(time, LONG, ONCE, {u"16T00:00:00 start"_s}, {});
    row("24:00:00", MESSAGE, BEFORE, {u"15T23:59:52 start"_s, u"16T23:59:52 start"_s},
        {u"16T23:59:52 start"_s, u"17T23:59:52 start"_s});
    row("24:00:07", SINGLE, BEFORE, {u"15T23:59:59 start"_s, u"16T23:59:59 start"_s},
        {u"16T23:59:59 start"_s, u"17T23:59:59 start"_s});
    // It has begun on the evening before.
    row("24:00:00", LONG, BEFORE_AND_ONCE, {u"15T23:59:52 start"_s, u"16T23:59:52 start"_s},
        {u"16T23:59:52 start"_s, u"17T23:59:52 start"_s});
    // A load at a full second has its far passes on the seconds that 3 divides.
    for (const char* task : {VOLUME, MESSAGE, SINGLE, LIGHT, RADIO})
    {
        const bool isRequestedAhead = task == MESSAGE || task == SINGLE;
        const QString forced = task == LIGHT || task == RADIO ? u"15T12:00:03 start, forced"_s : QString();
        for (const int second : {1, 2})
        {
            QStringList starts;
            for (const int day : {16, 17})
                starts.append(u"%1T00:00:0%2 start, by chance"_s.arg(day).arg(isRequestedAhead ? 0 : second));
            row(second == 1 ? "00:00:01" : "00:00:02", task, second == 1 ? IN_1 : IN_2,
                (forced.isEmpty() ? QStringList() : QStringList(forced)) + starts, starts);
        }
    }
    row("00:00:01", LONG, QByteArray(IN_1) + ALWAYS_ONCE, {u"16T00:00:00 start"_s, u"17T00:00:00 start, by chance"_s},
        {u"16T00:00:00 start, by chance"_s, u"17T00:00:00 start, by chance"_s});
}

void tst_OddStarts::EveryCommandSaysTheSame()
{
    QFETCH(const QByteArray, line);
    QFETCH(const QString, words);
    QFETCH(const QStringList, afterLoad);
    QFETCH(const QStringList, forLong);
    const CommandCall call;
    call.Write(u"s.csv"_s, line + '\n');
    call.Write(u"lists/single"_s, "first.mp3;60\n");
    call.Write(u"lists/long"_s, "first.mp3;60\nsecond.mp3;60\n");
    const QStringList place{u"--tz"_s, u"UTC"_s, u"--playlists"_s, u"lists"_s};
    const auto run = [&](const QStringList& arguments) {
        const CommandCall::Result result = call.Run(arguments + place);
        return result.errors + result.output;
    };

    const QString found = run({u"check"_s, u"s.csv"_s});
    QVERIFY2(found.contains(u" it %1; write "_s.arg(words)), qPrintable(found));
    const QString explained = call.Run({u"explain"_s, u"--playlists"_s, u"lists"_s, QString::fromLatin1(line)}).output;
    QVERIFY2(explained.contains(u" it %1."_s.arg(words)), qPrintable(explained));
    const QString next = run({u"next"_s, u"s.csv"_s, u"--from"_s, u"2024-05-16"_s, u"-n"_s, u"2"_s});
    QVERIFY2(next.endsWith(u"line 1 %1\n"_s.arg(words)), qPrintable(next));
    const QStringList span{u"--from"_s, u"2024-05-16"_s, u"--days"_s, u"2"_s};
    const QString rehearsed = run(QStringList{u"rehearse"_s, u"s.csv"_s} + span);
    QVERIFY2(rehearsed.endsWith(u"Lines that do not always start at their time:\n  line 1 %1\n"_s.arg(words)),
             qPrintable(rehearsed));
    const QString changes = run({u"dst"_s, u"s.csv"_s, u"--from"_s, u"2024-05-16"_s, u"--years"_s, u"1"_s});
    QVERIFY2(changes.endsWith(u": %1\n"_s.arg(words)), qPrintable(changes));

    const QStringList json{u"rehearse"_s, u"s.csv"_s, u"--json"_s};
    QCOMPARE(Moments(run(json + QStringList{u"--start-at"_s, u"2024-05-15T12:00"_s, u"--from"_s, u"2024-05-15T12:00"_s,
                                            u"--days"_s, u"2"_s})
                         .toUtf8()),
             afterLoad);
    QCOMPARE(Moments(run(json + span).toUtf8()), forLong);
    int starts = 0;
    for (const QString& row : next.split(u'\n'))
        starts += row.contains(u"  line 1"_s) ? 1 : 0;
    QCOMPARE(starts, forLong.isEmpty() ? 0 : 2);
}

void tst_OddStarts::WithoutTheTracksAPlaylistMayBeFoundAtMidnight_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("words");

    QTest::newRow("midnight") << u"00:00:00"_s
                              << u" it may start at midnight once after a load, if the playlist has more than one "
                                 "track, and otherwise never starts."_s;
    QTest::newRow("by chance") << u"00:00:02"_s
                               << u" it "_s + QLatin1String(IN_2) + QLatin1String(ALWAYS_ONCE) +
                                      u", if the playlist has more than one track."_s;
    QTest::newRow("the evening before") << u"24:00:00"_s
                                        << u" it "_s + QLatin1String(BEFORE_AND_ONCE) +
                                               u", if the playlist has more than one track."_s;
    QTest::newRow("no time") << u"07:60:05"_s
                             << u" The time does not exist: it may start at midnight, once after a load, if the "
                                "playlist has more than one track."_s;
}

void tst_OddStarts::WithoutTheTracksAPlaylistMayBeFoundAtMidnight()
{
    QFETCH(const QString, time);
    QFETCH(const QString, words);
    const CommandCall call;
    const auto explain = [&](const QString& task) {
        return call.Run({u"explain"_s, u"1111111|%1|*|*|*|||%2"_s.arg(time, task)}).output;
    };
    const QString explained = explain(u"PlayPlaylist|p2"_s);
    QVERIFY2(explained.contains(words), qPrintable(explained));
    const QString message = explain(u"PlayMessage|gong.mp3"_s);
    QVERIFY2(!message.contains(u"playlist"_s), qPrintable(message));
}

OZNA_CASE(OddStarts, tst_OddStarts)
#include "tst_OddStarts.moc"
