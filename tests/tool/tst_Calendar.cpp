#include "CommandCall.h"
#include "Suite.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

// The starts as a calendar, read back by an independent reader.
class CalendarTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void StartsAreEntries_data();
    void StartsAreEntries();
    void ALaterCalendarReplacesTheFirst_data();
    void ALaterCalendarReplacesTheFirst();
    void IdentifiersAreUnique();
    void LinesAreShortAndEndAsTheyMust();
    void TheOptionFailsOnlyWithoutTheLibrary();

private:
    // The calendar of lines, as the tool writes it. arguments: of the rehearsal, separated by blanks.
    [[nodiscard]] QByteArray Calendar(const QByteArray& lines, const QString& arguments) const;

    // What the reader tells of it: fields of an entry a line.
    [[nodiscard]] QString Read(const QByteArray& calendar, const QString& fields) const;

    CommandCall m_call;
};

namespace
{

const QString SPAN = u"--tz Europe/Rome --from 2024-05-15 --days 1"_s;
const QString ALL = u"begin end status category summary"_s;

} // namespace

void CalendarTest::initTestCase()
{
    m_call.Write(u"playlists/morning"_s, "intro.mp3;60\nnews, and more.mp3;300\n");
}

QByteArray CalendarTest::Calendar(const QByteArray& lines, const QString& arguments) const
{
    m_call.Write(u"s.csv"_s, lines);
    const CommandCall::Result result =
        m_call.Run(QStringList{u"rehearse"_s, u"s.csv"_s, u"--ics"_s} + arguments.split(u' '));
    return result.status == 0 ? result.output.toUtf8() : result.errors.toUtf8();
}

QString CalendarTest::Read(const QByteArray& calendar, const QString& fields) const
{
    const CommandCall::Result result = m_call.RunProgram(
        QStringLiteral(OZNA_PYTHON),
        QStringList{QStringLiteral(OZNA_SOURCES "/tests/tool/read-calendar")} + fields.split(u' '), calendar);
    return result.output + result.errors;
}

void CalendarTest::StartsAreEntries_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("entries");

    const auto row = [](const char* name, const char* lines, const QString& arguments, const QString& fields,
                        const char* entries) {
        QTest::newRow(name) << QByteArray(lines) << arguments << fields << QString::fromUtf8(entries);
    };
    row("a message at its second", "1111111|08:30:07|*|*|*|||PlayMessage|gong.mp3,70\n", SPAN, ALL,
        "2024-05-15T06:30:07+00:00 ; - ; CONFIRMED ; - ; Message gong.mp3\n");
    row("a playlist with its length", "1111111|09:00:00|*|*|*|||PlayPlaylist|morning\n", SPAN, ALL,
        "2024-05-15T07:00:00+00:00 ; 2024-05-15T07:06:02+00:00 ; CONFIRMED ; - ; Playlist morning\n");
    row("a playlist that is stopped",
        "1111111|09:00:00|*|*|*|||PlayPlaylist|morning,,p1\n1111111|09:02:00|*|*|*|||StopPlaylist|p1\n", SPAN, ALL,
        "2024-05-15T07:00:00+00:00 ; 2024-05-15T07:02:00+00:00 ; CONFIRMED ; - ; Playlist morning\n"
        "2024-05-15T07:02:00+00:00 ; - ; CONFIRMED ; - ; Stop playlist p1\n");
    row("a playlist longer than the rehearsal", "1111111|23:59:00|*|*|*|||PlayPlaylist|morning\n", SPAN, ALL,
        "2024-05-14T21:59:00+00:00 ; 2024-05-14T22:05:02+00:00 ; CONFIRMED ; - ; Playlist morning\n"
        "2024-05-15T21:59:00+00:00 ; 2024-05-15T22:05:02+00:00 ; CONFIRMED ; - ; Playlist morning\n");
    row("a stream that goes on", "0000000|20:00:00|15|5|2024|||PlayStream|8554/a\n", SPAN, ALL,
        "2024-05-15T18:00:00+00:00 ; 2024-05-15T22:00:00+00:00 ; CONFIRMED ; - ; Stream rtsp://<ServerIp>:8554/a\n");
    row("a setting", "1111111|10:00:00|*|*|*|||Volume|30\n", SPAN, ALL,
        "2024-05-15T08:00:00+00:00 ; - ; CONFIRMED ; - ; Volume 30.0\n");
    row("what is missed", "1111111|00:00:00|*|*|*|||Volume|30\n", SPAN, ALL,
        "2024-05-14T22:00:00+00:00 ; - ; CANCELLED ; MISSED ; missed: Volume\n");
    row("what is skipped, and starts after all",
        "1111111|09:00:00|*|*|*|||PlayPlaylist|morning,,p1\n1111111|09:00:02|*|*|*|||StopPlaylist|p1\n",
        u"--tz UTC --start-at 2024-05-15T08:59:50 --days 1"_s, ALL,
        "2024-05-15T09:00:00+00:00 ; - ; CANCELLED ; SKIPPED ; skipped: Playlist\n"
        "2024-05-15T09:00:00+00:00 ; 2024-05-15T09:00:02+00:00 ; CONFIRMED ; - ; Playlist morning\n"
        "2024-05-15T09:00:02+00:00 ; - ; CONFIRMED ; - ; Stop playlist p1\n");
    row("what is forced", "1111111|08:00:00|*|*|*|||Light|40\n", u"--tz UTC --start-at 2024-05-15T09:00:01 --days 1"_s,
        ALL,
        "2024-05-15T09:00:04+00:00 ; - ; CONFIRMED ; FORCED ; forced: Light 40\n"
        "2024-05-16T08:00:00+00:00 ; - ; CONFIRMED ; - ; Light 40\n");
    row("what is late", "1111111|09:00:00|*|*|*|||PlayPlaylist|morning\n",
        u"--tz UTC --start-at 2024-05-15T09:00:30 --days 1"_s, u"begin end category summary description"_s,
        "2024-05-15T09:00:33+00:00 ; 2024-05-15T09:05:33+00:00 ; LATE ; late: Playlist morning from track 2 ; "
        "by 33 s/09:00:33 news, and more.mp3/PlayPlaylist, line 1 of s.csv\n"
        "2024-05-16T09:00:00+00:00 ; 2024-05-16T09:06:02+00:00 ; - ; Playlist morning ; "
        "09:00:00 intro.mp3/09:01:02 news, and more.mp3/PlayPlaylist, line 1 of s.csv\n");
    row("a time that comes twice", "1111111|02:30:00|*|*|*|||Volume|30\n",
        u"--tz Europe/Rome --from 2024-10-27 --days 1"_s, u"begin category"_s,
        "2024-10-27T00:30:00+00:00 ; -\n2024-10-27T01:30:00+00:00 ; REPEATED\n");
    row("texts with signs of the format", "1111111|08:00:00|*|*|*|||PlayMessage|a;b\\c:\"d\".mp3\n", SPAN, u"summary"_s,
        "Message a;b\\c:\"d\".mp3\n");
    row("a name longer than a line",
        "1111111|08:00:00|*|*|*|||PlayMessage|"
        "a message with a name that is longer than the seventy-five bytes of which a line consists.mp3\n",
        SPAN, u"summary"_s,
        "Message a message with a name that is longer than the seventy-five bytes of which a line consists.mp3\n");
    row("a series of photos, but not its end", "1111111|08:00:00|*|*|*|||RecordPhoto|5,3\n", SPAN, u"summary"_s,
        "Photo 5\n");
    row("nothing", "", SPAN, ALL, "");
}

void CalendarTest::StartsAreEntries()
{
    if (!OZNA_HAS_ICAL)
        QSKIP("built without libical");
    QFETCH(const QByteArray, lines);
    QFETCH(const QString, arguments);
    QFETCH(const QString, fields);
    QFETCH(const QString, entries);
    QCOMPARE(Read(Calendar(lines, arguments), fields), entries);
}

void CalendarTest::ALaterCalendarReplacesTheFirst_data()
{
    QTest::addColumn<QByteArray>("lines");
    const auto row = [](const char* name, const char* lines) { QTest::newRow(name) << QByteArray(lines); };
    row("the same", "1111111|08:00:00|*|*|*|||PlayMessage|a\n1111111|08:00:00|*|*|*|||PlayMessage|b\n");
    row("on other lines",
        "# changed\n1111111|08:00:00|*|*|*|||PlayMessage|a\n\n1111111|08:00:00|*|*|*|||PlayMessage|b\n");
    row("with other values", "1111111|08:00:00|*|*|*|||PlayMessage|c,50\n1111111|08:00:00|*|*|*|||1|b\n");
}

void CalendarTest::ALaterCalendarReplacesTheFirst()
{
    if (!OZNA_HAS_ICAL)
        QSKIP("built without libical");
    QFETCH(const QByteArray, lines);
    const QString first =
        Read(Calendar("1111111|08:00:00|*|*|*|||PlayMessage|a\n1111111|08:00:00|*|*|*|||PlayMessage|b\n",
                      u"--tz UTC --from 2024-05-15 --days 2"_s),
             u"identifier"_s);
    const QString later = Read(Calendar(lines, u"--tz UTC --from 2024-05-16 --days 1"_s), u"identifier"_s);
    QCOMPARE(first.count(u'\n'), 4);
    QCOMPARE(later.count(u'\n'), 2);
    QVERIFY2(first.endsWith(later), qPrintable(first + later));
}

void CalendarTest::IdentifiersAreUnique()
{
    if (!OZNA_HAS_ICAL)
        QSKIP("built without libical");
    const QByteArray lines = "1111111|08:00:00|*|*|*|||Light|4\n1111111|08:00:00|*|*|*|||Light|5\n"
                             "1111111|08:00:00|*|*|*|||PlayMessage|a\n1111111|02:30:00|*|*|*|||Volume|1\n";
    const QString told =
        Read(Calendar(lines, u"--tz Europe/Rome --start-at 2024-10-26T09:00 --days 5"_s), u"identifier"_s);
    const QStringList identifiers = told.split(u'\n', Qt::SkipEmptyParts);
    QVERIFY(identifiers.size() > 20);
    QCOMPARE(QSet<QString>(identifiers.begin(), identifiers.end()).size(), identifiers.size());
    m_call.Write(u"other.csv"_s, lines);
    const CommandCall::Result other =
        m_call.Run("rehearse other.csv --ics --tz Europe/Rome --from 2024-10-27 --days 1");
    for (const QString& identifier : Read(other.output.toUtf8(), u"identifier"_s).split(u'\n', Qt::SkipEmptyParts))
        QVERIFY2(!identifiers.contains(identifier), qPrintable(identifier));
}

void CalendarTest::LinesAreShortAndEndAsTheyMust()
{
    if (!OZNA_HAS_ICAL)
        QSKIP("built without libical");
    QByteArrayList lines = Calendar("1111111|09:00:00|*|*|*|||PlayPlaylist|morning\n", SPAN).split('\n');
    QCOMPARE(lines.takeLast(), QByteArray());
    QVERIFY(lines.size() > 10);
    for (const QByteArray& line : lines)
        QVERIFY2(line.endsWith('\r') && line.size() <= 76, line.constData());
    QCOMPARE(lines.last(), QByteArray("END:VCALENDAR\r"));
}

void CalendarTest::TheOptionFailsOnlyWithoutTheLibrary()
{
    if (OZNA_HAS_ICAL)
    {
        QVERIFY(Calendar("", SPAN).startsWith("BEGIN:VCALENDAR\r\n"));
        return;
    }
    QCOMPARE(
        Calendar("", SPAN),
        QByteArray("ozna-schedule: --ics: this ozna-schedule was built without libical, which writes calendars\n"));
}

OZNA_CASE(Calendar, CalendarTest)
#include "tst_Calendar.moc"
