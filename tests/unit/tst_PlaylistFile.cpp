#include "PlaylistLines.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayPlaylist.h"

#include <limits>

using namespace Qt::StringLiterals;
using namespace PlaylistLines;

namespace
{

const QString NAME = u"xmas"_s;

PlayPlaylist Play()
{
    return {u"08:30:00"_s, NAME, u"70"_s, u"id"_s};
}

} // namespace

class PlaylistFileTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALineIsReadByItsRules_data();
    void ALineIsReadByItsRules();
    void ALineOfAMegabyteIsATrack();
    void ALastLineWithoutAnEndIsTold_data();
    void ALastLineWithoutAnEndIsTold();
    void AFilesLengthHasItsGaps_data();
    void AFilesLengthHasItsGaps();
    void AFileWithoutTracksIsNoPlaylist_data();
    void AFileWithoutTracksIsNoPlaylist();

private:
    QByteArray Path() { return Data().PlaylistPath(NAME).toUtf8(); }
};

void PlaylistFileTest::ALineIsReadByItsRules_data()
{
    QTest::addColumn<QByteArray>("line"); // with its terminator, where it has one of its own
    QTest::addColumn<LogLines>("log");
    QTest::addColumn<bool>("isTrack");
    QTest::addColumn<int>("duration_s");

    const auto ignored = [](const char* name, const QByteArray& line) {
        QTest::newRow(name) << line << LogLines{Ignored(line)} << false << 0;
    };
    ignored("an empty line", "");
    ignored("a blank", " ");
    ignored("ten blanks", "          ");
    ignored("ten tabs", "\t\t\t\t\t\t\t\t\t\t");
    ignored("nine characters", "123456789");
    ignored("a track of nine characters", "a.mp3;100");
    ignored("a track of nine characters with blanks before it", "  a.mp3;1");
    ignored("a track of nine characters with blanks after it", "a.mp3;1  ");
    ignored("nine characters of more bytes", "\xc3\xa8\xc3\xa8\xc3\xa8\xc3\xa8\xc3\xa8\xc3\xa8\xc3\xa8;1");
    ignored("a comment", "# our songs");
    ignored("a comment after blanks", "   # our songs");
    ignored("a track that is commented out", "#song.mp3;60");
    ignored("a number sign in a file name", "song#1.mp3;60");
    ignored("a comment behind a track", "song.mp3;60 # loud");
    ignored("two number signs at the end", "song.mp3;60##");
    ignored("ten number signs", "##########");
    QTest::newRow("a track of nine characters, with carriage return")
        << "a.mp3;100\r"_ba << LogLines{Ignored("a.mp3;100")} << false << 0;

    const auto wrong = [](const char* name, const QByteArray& line) {
        QTest::newRow(name) << line << LogLines{Wrong(line)} << false << 0;
    };
    wrong("no duration", "a name without a number");
    wrong("ten characters without duration", "1234567890");
    wrong("nothing after the semicolon", "a-song.mp3;");
    wrong("a comma for a semicolon", "song.mp3,60");
    wrong("format characters without duration", "%s%n%d%s%n%d");
    // A number sign that comes last makes no comment.
    wrong("a lone number sign after nine blanks", "         #");
    wrong("a number sign at the end of a text", "no comment#");

    const auto track = [](const char* name, const QByteArray& line, const QByteArray& file, int duration_s) {
        QTest::newRow(name) << line << LogLines{Found(file, duration_s)} << true << duration_s;
    };
    track("ten characters", "a.mp3;1000", "a.mp3", 1000);
    track("ten characters with blanks before the name", "  a.mp3;10", "a.mp3", 10);
    track("ten characters with blanks after the duration", "a.mp3;10  ", "a.mp3", 10);
    track("ten characters, with carriage return", "a.mp3;1000\r", "a.mp3", 1000);
    track("blanks around both fields", "  song.mp3\t;\t60  ", "song.mp3", 60);
    track("a blank in the name", "our song.mp3;60", "our song.mp3", 60);
    track("more fields", "song.mp3;60;90;loud", "song.mp3", 60);
    track("a semicolon at the end", "song.mp3;60;", "song.mp3", 60);
    track("an empty name", ";60       ", "", 60);
    track("nothing but semicolons", ";;;;;;;;;;", "", 0);
    track("a blank for a duration", "a-song.mp3; ", "a-song.mp3", 0);
    track("an empty duration before a field", "song.mp3;;60", "song.mp3", 0);
    track("a duration of letters", "song.mp3;sixty", "song.mp3", 0);
    track("a duration with a unit", "song.mp3;60s", "song.mp3", 0);
    track("a duration with a decimal point", "song.mp3;60.5", "song.mp3", 0);
    track("a duration in minutes", "song.mp3;1:00", "song.mp3", 0);
    track("a duration in another base", "song.mp3;0x10", "song.mp3", 0);
    track("a duration with a plus sign", "song.mp3;+60", "song.mp3", 60);
    track("a duration with noughts", "song.mp3;0060", "song.mp3", 60);
    track("a duration of 0", "song.mp3;000", "song.mp3", 0);
    track("a negative duration", "song.mp3;-5", "song.mp3", -5);
    track("the greatest duration", "song.mp3;2147483647", "song.mp3", std::numeric_limits<int>::max());
    track("the least duration", "song.mp3;-2147483648", "song.mp3", std::numeric_limits<int>::min());
    track("a duration that no int holds", "song.mp3;2147483648", "song.mp3", 0);
    track("a duration of many digits", "song.mp3;99999999999999999999", "song.mp3", 0);
    track("a number sign right after the duration", "song.mp3;60#", "song.mp3", 0);
    track("a number sign last, blanks after it", "song.mp3;60 #  ", "song.mp3", 0);
    track("a letter with an accent", "No\xc3\xabl.mp3;60", "No\xc3\xabl.mp3", 60);
    track("a letter beyond Latin-1", "\xe2\x82\xac-song.mp3;60", "?-song.mp3", 60);
    track("format characters", "%s%n%d.mp3;60", "%s%n%d.mp3", 60);
}

void PlaylistFileTest::ALineIsReadByItsRules()
{
    QFETCH(QByteArray, line);
    QFETCH(LogLines, log);
    QFETCH(bool, isTrack);
    QFETCH(int, duration_s);
    Data().WritePlaylist(line + "\nlast.mp3;10\n", NAME);
    // Lengths wrap around, like the unsigned numbers that they are.
    const unsigned int lastStart_s = isTrack ? static_cast<unsigned int>(duration_s) + 2U : 0U;
    const int total_s = static_cast<int>(lastStart_s + 10U);
    const PlayPlaylist task = Play();
    EXPECT_LOG(9, (LogLines{Loading(Path())} + log +
                   LogLines{Found("last.mp3", 10), Loaded(isTrack ? 2 : 1),
                            Created("xmas at 08:30:00 (" + QByteArray::number(total_s) + " s, vol=70)")}));
    QCOMPARE(task.GetDelayable_s(), lastStart_s);
}

void PlaylistFileTest::ALineOfAMegabyteIsATrack()
{
    Data().WritePlaylist(QByteArray(1'000'000, 'x') + ";60\nlast.mp3;10\n", NAME);
    const PlayPlaylist task = Play();
    QCOMPARE(task.GetDelayable_s(), 62U);
    for (const LogRecord& record : LogRecorder::Records())
        QVERIFY(record.text.size() <= 511);
    LogRecorder::Clear();
}

void PlaylistFileTest::ALastLineWithoutAnEndIsTold_data()
{
    const LogLine first = Found("track1.mp3", 60);
    Rows<QByteArray, LogLines, int, int, int>::Add({
        {"a track", "track1.mp3;60\ntrack2.mp3;3", {first, Found("track2.mp3", 3)}, 2, 2, 65},
        {"a cut track", "track1.mp3;60\ntrack2", {first, Ignored("track2")}, 2, 1, 60},
        {"a comment", "track1.mp3;60\n\n# the end", {first, Ignored(""), Ignored("# the end")}, 3, 1, 60},
        {"lone carriage returns", "track1.mp3;60\rtrack2.mp3;30\r", {Found("track1.mp3", 0)}, 1, 1, 0},
    });
}

void PlaylistFileTest::ALastLineWithoutAnEndIsTold()
{
    const auto& [content, log, last, tracks, total_s] = Rows<QByteArray, LogLines, int, int, int>::Current();
    Data().WritePlaylist(content, NAME);
    const PlayPlaylist task = Play();
    EXPECT_LOG(9, (LogLines{Loading(Path())} + log +
                   LogLines{Cut(Path(), last), Loaded(tracks),
                            Created("xmas at 08:30:00 (" + QByteArray::number(total_s) + " s, vol=70)")}));
}

void PlaylistFileTest::AFilesLengthHasItsGaps_data()
{
    Rows<QByteArray, int, int, unsigned int>::Add({
        {"one track has no gap", "track1.mp3;300\n", 1, 300, 0},
        {"two tracks have one gap", "track1.mp3;60\ntrack2.mp3;30\n", 2, 92, 62},
        {"three tracks have two gaps", "track1.mp3;60\ntrack2.mp3;30\ntrack3.mp3;100\n", 3, 194, 94},
        {"a last track at five minutes", "track1.mp3;298\ntrack2.mp3;20\n", 2, 320, 300},
        {"a track of 0 s has its gaps too", "track1.mp3;60\ntrack2.mp3;none\ntrack3.mp3;30\n", 3, 94, 64},
        {"nothing but tracks of 0 s", "track1.mp3;000\ntrack2.mp3;000\n", 2, 2, 2},
        {"lines between the tracks count for nothing", "# ours\ntrack1.mp3;60\n\nwrong line\nshort;1\ntrack2.mp3;30\n",
         2, 92, 62},
        {"lines after the tracks count for nothing", "track1.mp3;60\ntrack2.mp3;30\n# end\nwrong line\n", 2, 92, 62},
        {"a last line without an end", "track1.mp3;60\ntrack2.mp3;30", 2, 92, 62},
        {"carriage returns and line feeds", "track1.mp3;60\r\ntrack2.mp3;30\r\n", 2, 92, 62},
        {"the same track twice", "track1.mp3;60\ntrack1.mp3;60\n", 2, 122, 62},
        {"a negative last track", "track1.mp3;60\ntrack2.mp3;-30\n", 2, 32, 62},
        {"lengths that no int holds", "track1.mp3;2147483647\ntrack2.mp3;2147483647\n", 2, 0, 2147483649U},
        {"lengths that wrap around", "track1.mp3;2147483647\ntrack2.mp3;2147483647\ntrack3.mp3;10\n", 3, 12, 2},
    });
}

void PlaylistFileTest::AFilesLengthHasItsGaps()
{
    const auto& [content, tracks, total_s, delayable_s] = Rows<QByteArray, int, int, unsigned int>::Current();
    Data().WritePlaylist(content, NAME);
    const PlayPlaylist task = Play();
    QCOMPARE(task.GetDelayable_s(), delayable_s);
    const QStringList messages = LogRecorder::Messages(4);
    QCOMPARE(messages.value(messages.size() - 2), u"Playlist loaded (%1 tracks)"_s.arg(tracks));
    QCOMPARE(messages.last(), u"TASK CREATED | PlayPlaylist: xmas at 08:30:00 (%1 s, vol=70)"_s.arg(total_s));
    LogRecorder::Clear();
}

void PlaylistFileTest::AFileWithoutTracksIsNoPlaylist_data()
{
    Rows<QByteArray, LogLines>::Add({
        {"an empty file", "", {}},
        {"a line feed", "\n", {Ignored("")}},
        {"only comments", "# one\n# our songs\n", {Ignored("# one"), Ignored("# our songs")}},
        {"only short lines", "a;1\nb;2\n", {Ignored("a;1"), Ignored("b;2")}},
        {"only wrong lines", "first track\nsecond track\n", {Wrong("first track"), Wrong("second track")}},
    });
}

void PlaylistFileTest::AFileWithoutTracksIsNoPlaylist()
{
    const auto& [content, log] = Rows<QByteArray, LogLines>::Current();
    Data().WritePlaylist(content, NAME);
    QVERIFY_THROWS_EXCEPTION(std::exception, Play());
    EXPECT_LOG(9, (LogLines{Loading(Path())} + log + LogLines{Empty(), Failed()}));
    EXPECT_REQUESTS(Bus(), {});
}

OZNA_CASE(PlaylistFile, PlaylistFileTest)
#include "tst_PlaylistFile.moc"
