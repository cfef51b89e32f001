#include "CheckRun.h"
#include "CommandCall.h"
#include "Suite.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString ZONE = u"Europe/Rome"_s;
const QString SCHEDULE = u"schedule/schedule.csv"_s;

// The kinds of the findings, in their order.
QString Kinds(const QStringList& lines)
{
    static const QRegularExpression KIND(u" \\[([a-z0-9-]+)\\]$"_s);
    QStringList kinds;
    for (const QString& line : lines)
    {
        const QRegularExpressionMatch match = KIND.match(line);
        if (match.hasMatch())
            kinds.append(match.captured(1));
    }
    return kinds.join(u' ');
}

} // namespace

// What a check says of lines that are fine alone, and that each cause gives one finding.
class CheckTogetherTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void OneCauseGivesOneFinding_data();
    void OneCauseGivesOneFinding();
    void ClockChangesAreToldForANamedZoneOnly();
    void ClockChangesAreThoseOfDst_data();
    void ClockChangesAreThoseOfDst();
    void ManyLinesOfOneSecondTakeNoTime();

private:
    // The lines that a command writes about a schedule.
    [[nodiscard]] QStringList Run(const QString& command, const QByteArray& schedule, const QStringList& options) const;
    [[nodiscard]] QStringList Check(const QByteArray& schedule) const
    {
        return Run(u"check"_s, schedule, {u"--today"_s, u"2024-05-15"_s, u"--tz"_s, ZONE});
    }

    CommandCall m_call;
};

void CheckTogetherTest::initTestCase()
{
    m_call.Write(u"playlists/morning"_s, "intro.mp3;60\nnews at eight.mp3;600\n");
    m_call.Write(u"playlists/evening"_s, "intro.mp3;60\nnews at six.mp3;600\n");
}

QStringList CheckTogetherTest::Run(const QString& command, const QByteArray& schedule, const QStringList& options) const
{
    m_call.Write(SCHEDULE, schedule);
    return m_call.Run(QStringList{command, SCHEDULE} + options).output.split(u'\n', Qt::SkipEmptyParts);
}

void CheckTogetherTest::OneCauseGivesOneFinding_data()
{
    QTest::addColumn<QByteArray>("schedule");
    QTest::addColumn<QString>("kind");

    const auto row = [](const char* name, const char* kind, const QByteArray& lines) {
        QTest::newRow(name) << lines << QString::fromLatin1(kind);
    };
    row("a missing playlist and its stop", "playlist-missing",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|mornin,50,music\n1111111|08:05:00|*|*|*|||StopPlaylist|music\n");
    row("a misspelled stop and its playlist", "unknown-task",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning,50,music\n1111111|08:05:00|*|*|*|||StopPlayList|music\n");
    row("a stop behind a comment and its playlist", "commented",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning,50,music\n"
        "1111111|08:05:00|*|*|*|||StopPlaylist|music # enough\n");
    row("an identifier behind a semicolon", "fallback",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning,50;music\n1111111|08:05:00|*|*|*|||StopPlaylist|music\n");
    row("a stop of ten fields", "ten-fields",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning,50,music\n1111111|08:05:00|*|*|*|||StopPlaylist|music|now\n");
    row("a stop of the radio without seconds", "time-parts",
        "1111111|08:00:00|*|*|*|||PlayRadioFm|98.5\n1111111|09:00|*|*|*|||StopRadioFm\n");
    row("a stop of a stream behind a comment", "commented",
        "1111111|08:00:00|*|*|*|||PlayStream|8554/live\n1111111|09:00:00|*|*|*|||StopStream # enough\n");
    row("a playlist that comes twice", "duplicate",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning\n1111111|08:00:00|*|*|*|||PlayPlaylist|morning\n");
    row("a message that comes twice", "duplicate",
        "1111111|08:00:00|*|*|*|||PlayMessage|gong.mp3\n1111111|08:00:00|*|*|*|||PlayMessage|gong.mp3\n");
    row("a stop as its playlist begins, and the next playlist", "stopped-at-start",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning,50,music\n1111111|08:00:00|*|*|*|||StopPlaylist|music\n"
        "1111111|08:05:00|*|*|*|||PlayPlaylist|evening\n");
    row("an early stop and the next playlist", "early-stop",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning,50,music\n1111111|07:05:00|*|*|*|||StopPlaylist|music\n"
        "1111111|08:05:00|*|*|*|||PlayPlaylist|evening\n");
    row("a misspelled identifier and its playlist", "unmatched-stop",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning,50,music\n1111111|08:05:00|*|*|*|||StopPlaylist|Music\n");
    row("a misspelled identifier and the next playlist", "unmatched-stop",
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning,50,music\n1111111|08:05:00|*|*|*|||StopPlaylist|musik\n"
        "1111111|08:05:00|*|*|*|||PlayPlaylist|evening\n");
    row("an unreadable value in the second of another", "fallback",
        "1111111|08:00:00|*|*|*|||Volume|50\n1111111|08:00:00|*|*|*|||Volume|40.5\n");
    row("a tenth field behind the parameters", "wrong-parameters",
        "1111111|08:00:00|*|*|*|||PlayMessage|gong.mp3|70\n");
    row("days that are no days", "days-form", "Mo-Fr|08:00:00|*|*|*|||PlayMessage|gong.mp3\n");
    row("a spot day that is none", "spot-any", "0000000|08:00:00|32|*|*|||PlayMessage|gong.mp3\n");
    row("a volume behind the semicolon of an address", "semicolon",
        "1111111|08:00:00|*|*|*|||PlayStream|rtsp://studio:8554/live;70\n1111111|09:00:00|*|*|*|||StopStream\n");
}

void CheckTogetherTest::OneCauseGivesOneFinding()
{
    QFETCH(const QByteArray, schedule);
    QFETCH(const QString, kind);
    const QStringList lines = Check(schedule);
    QVERIFY2(Kinds(lines) == kind, qPrintable(lines.join(u'\n')));
}

void CheckTogetherTest::ClockChangesAreToldForANamedZoneOnly()
{
    const QByteArray schedule = "1111111|02:30:00|*|*|*|||Volume|30\n";
    QCOMPARE(Kinds(Check(schedule)), u"clock-change"_s);
    QCOMPARE(Kinds(Run(u"check"_s, schedule, {u"--today"_s, u"2024-05-15"_s})), QString());
    QCOMPARE(Kinds(Run(u"check"_s, schedule, {u"--today"_s, u"2024-05-15"_s, u"--tz"_s, u"UTC"_s})), QString());
}

void CheckTogetherTest::ClockChangesAreThoseOfDst_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QString>("time");

    const auto rows = [](const char* zone, const QList<const char*>& times) {
        for (const char* time : times)
            QTest::addRow("%s %s", zone, time) << QString::fromLatin1(zone) << QString::fromLatin1(time);
    };
    rows("Europe/Rome",
         {"01:59:52", "01:59:59", "02:00:00", "02:30:00", "02:59:59", "03:00:00", "03:00:07", "03:00:08"});
    rows("America/Los_Angeles", {"00:59:59", "01:00:00", "01:30:00", "02:00:07", "02:00:08", "03:00:00", "03:00:04"});
    rows("Australia/Lord_Howe", {"01:29:59", "01:30:00", "02:00:07", "02:15:00", "02:30:00", "02:30:04"});
    rows("Asia/Beirut", {"22:59:59", "23:00:00", "23:59:59", "00:30:00", "01:00:00", "01:00:04"});
}

void CheckTogetherTest::ClockChangesAreThoseOfDst()
{
    QFETCH(const QString, zone);
    QFETCH(const QString, time);
    for (const char* task : {"Volume|30", "PlayMessage|gong.mp3"})
    {
        const QByteArray schedule = "1111111|" + time.toLatin1() + "|*|*|*|||" + task + '\n';
        const QString told = Kinds(Run(u"check"_s, schedule, {u"--today"_s, u"2024-05-15"_s, u"--tz"_s, zone}));
        const QStringList dst =
            Run(u"dst"_s, schedule, {u"--from"_s, u"2024-05-15"_s, u"--years"_s, u"1"_s, u"--tz"_s, zone});
        const bool isShown = !dst.filter(u"  line 1, "_s).isEmpty();
        // The request ahead of a start is in the hour that comes twice, where the start is not.
        QCOMPARE(told, isShown ? u"clock-change"_s : QString());
    }
}

void CheckTogetherTest::ManyLinesOfOneSecondTakeNoTime()
{
    constexpr int LINES = 3000;
    QByteArray schedule;
    for (int line = 0; line < LINES; ++line)
        schedule += u"1111111|08:00:0%1|*|*|*|||%2\n"_s.arg(line % 2)
                        .arg(line % 3 == 0   ? u"PlayPlaylist|morning,%1,music"_s.arg(line % 100)
                             : line % 3 == 1 ? u"StopPlaylist|music"_s
                                             : u"Volume|%1"_s.arg(line % 100))
                        .toLatin1();
    QElapsedTimer since;
    since.start();
    QVERIFY(Check(schedule).last().startsWith(u"%1 lines, 0 errors, "_s.arg(LINES)));
    // Far beyond what it takes, for machines that are busy or slowed down by sanitizers.
    QVERIFY2(since.elapsed() < 20000, QByteArray::number(since.elapsed()).constData());
}

OZNA_CASE(CheckTogether, CheckTogetherTest)
#include "tst_CheckTogether.moc"
