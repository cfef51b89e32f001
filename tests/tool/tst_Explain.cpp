#include "CommandCall.h"
#include "KindTable.h"
#include "Suite.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What the tool says of single lines.
class tst_Explain final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ALineIsSaidInWords_data();
    void ALineIsSaidInWords();
    void ARejectedLineTellsTheReasonAndWhatToWrite();
    void LinesComeFromStandardInput();
    void StandardInputIsReadAsAFileIs_data();
    void StandardInputIsReadAsAFileIs();
    void AKnownPlaylistTellsItsTracks();
    void AMissingPlaylistIsRejectedWhereTheFolderIsKnown();
    void ANameThatLeadsOutOfTheFolderMakesNoFile();
    void ControlCharactersAreShownAndNotSent();
};

void tst_Explain::ALineIsSaidInWords_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("words");

    const auto days = [](const char* fields, const char* words) {
        QTest::newRow(fields) << u"%1|StopMessage"_s.arg(QLatin1String(fields))
                              << u"%1, stop the message that is playing."_s.arg(QLatin1String(words));
    };
    days("1111100|08:30:00|*|*|*|20240101|20241231",
         "On Mondays to Fridays at 08:30:00, from 1 January 2024 to 31 December 2024");
    days("1111111|08:30:00|*|*|*||", "Every day at 08:30:00");
    days("0000011|08:30:00|*|*|*||", "At weekends at 08:30:00");
    days("1010100|08:30:00|*|*|*||", "On Mondays, Wednesdays and Fridays at 08:30:00");
    days("1100000|08:30:00|*|*|*||", "On Mondays and Tuesdays at 08:30:00");
    days("0000001|08:30:00|*|*|*||", "On Sundays at 08:30:00");
    days("0111111|08:30:00|*|*|*||", "On Tuesdays to Sundays at 08:30:00");
    days("1111111|08:30:00|*|*|*|20240101|", "Every day at 08:30:00, from 1 January 2024 on");
    days("1111111|08:30:00|*|*|*||20241231", "Every day at 08:30:00, until 31 December 2024");
    days("1111111|08:30:00|*|*|*|20240230|", "Every day at 08:30:00");
    days("0000000|08:30:00|25|12|2024||", "On 25 December 2024 (the date in UTC) at 08:30:00");
    days("0000000|08:30:00|25|12|*||", "On 25 December of every year (the date in UTC) at 08:30:00");
    days("0000000|08:30:00|31|*|*||", "On day 31 of every month (the date in UTC) at 08:30:00");
    days("0000000|08:30:00|31|*|2024||", "On day 31 of every month of 2024 (the date in UTC) at 08:30:00");
    days("0000000|08:30:00|*|12|*||", "On every day of December (the date in UTC) at 08:30:00");
    days("0000000|08:30:00|*|12|2024||", "On every day of December 2024 (the date in UTC) at 08:30:00");
    days("0000000|08:30:00|*|*|2024||", "On every day of 2024 (the date in UTC) at 08:30:00");
    days("1000000|08:30:00|25|12|*||", "On Mondays, and on 25 December of every year (the date in UTC) at 08:30:00");
    days("1111111|8:5:0|*|*|*||", "Every day at 08:05:00");

    const auto task = [](const char* fields, const char* words) {
        QTest::newRow(fields) << u"1111111|06:00:00|*|*|*|||%1"_s.arg(QLatin1String(fields))
                              << u"Every day at 06:00:00, %1"_s.arg(QLatin1String(words));
    };
    for (const KindRow& kind : AllKinds())
    {
        if (kind.words != nullptr)
            task((QByteArray(kind.name) + "|1").constData(), (QByteArray(kind.words) + '.').constData());
    }
    task("Light|40", "switch the lights on with intensity 40.");
    task("Light|0", "switch the lights off.");
    task("0|7", "switch the lights on with intensity 7.");
    task("PlayMessage|gong.mp3", "play the message gong.mp3.");
    task("PlayMessage|gong.mp3,70", "play the message gong.mp3 at volume 70.");
    task("PlayPlaylist|morning", "play the playlist morning.");
    task("PlayPlaylist|morning,60,p1", "play the playlist morning at volume 60 under the identifier p1.");
    task("RecordPhoto", "take one photo.");
    task("RecordPhoto|10,3", "take a photo every 10 s, 3 in all.");
    task("RecordPhoto|10,0", "take a photo every 10 s, 1 in all.");
    task("RecordPhoto|10,-1", "take a photo every 10 s, without end.");
    task("PlayRadioFm|98.5", "switch the FM radio on and tune it to 98.5 MHz.");
    task("PlayRadioFm|0", "switch the FM radio off.");
    task("Amplifiers|256", "switch all amplifier outputs off.");
    task("SetCpuFreq|800", "set the processor to 456 MHz. The daemon warns: Can't parse Cpu frequency from parameters: "
                           "'800'. Using 456.");
    task("Camera|2", "switch the camera off.");
    task("Gps|0", "switch the GPS receiver off.");
    task("Lan|0", "switch the LAN off.");
    task("StopPlaylist|p1", "stop the playlist that plays under the identifier p1.");
    task("StopPlaylist", "stop the playlist that plays without an identifier.");
    task("StopMessage", "stop the message that is playing.");
    task("StopRadioFm", "switch the FM radio off.");
    task("PlayStream|8554/live,50", "play the stream rtsp://<ServerIp>:8554/live at volume 50.");
    task("StopStream", "stop the stream that is playing.");
    task("enableAux|1", "switch the auxiliary input on.");
    task("enableAux|0", "switch the auxiliary input off.");
    task("19|1,1", "announce that the PDD action STREAM_MIC is expected on.");
    task("19|1,0", "announce that the PDD action STREAM_MIC is expected off.");
    task("19|2,1",
         "do nothing: there is no such PDD action. The daemon warns: Can't parse RequestPddAction action from "
         "parameters: '2'. Using action=NONE.");
    task("PlayMessage|gong.mp3,loud", "play the message gong.mp3. The daemon warns: Invalid volume=loud, not used.");

    const auto odd = [](const char* line, const char* words) {
        QTest::newRow(line) << QString::fromLatin1(line) << words;
    };
    odd("0000000|06:00:00|*|*|*|||Volume|5", "Never, at 06:00:00, set the master volume to 5. No day of the week is "
                                             "marked, and there is no spot date.");
    odd("0000000|06:00:00|30|2|*|||Volume|5", "On 30 February of every year (the date in UTC) at 06:00:00, set the "
                                              "master volume to 5. There is no such spot date.");
    odd("0000000|06:00:00|29|2|2023|||Volume|5", "On 29 February 2023 (the date in UTC) at 06:00:00, set the master "
                                                 "volume to 5. There is no such spot date.");
    odd("0000000|06:00:00|29|2|*|||Volume|5", "On 29 February of every year (the date in UTC) at 06:00:00, set the "
                                              "master volume to 5.");
    odd("1111111|06:00:00|*|*|*|20250101|20240101|Volume|5",
        "Every day at 06:00:00, from 1 January 2025 to 1 January 2024, set the master volume to 5. Its last date comes "
        "before its first: it is never valid.");
    odd("1111111|25:00:00|*|*|*|||Volume|5",
        "Every day at 25:00:00, set the master volume to 5. 25:00:00 is no time of day: it never starts.");
    odd("1111111|25:00:00|*|*|*|||Light|5", "Every day at 25:00:00, switch the lights on with intensity 5. 25:00:00 is "
                                            "no time of day: it starts only after a load: at once on one of its days, "
                                            "or else at the next midnight that begins one.");
    odd("1111111|07:60:05|*|*|*|||Light|5", "Every day at 08:00:05, switch the lights on with intensity 5. The time "
                                            "does not exist: a load starts it, as one of midnight.");
    odd("1111111|00:00:00|*|*|*|||Volume|5", "Every day at 00:00:00, set the master volume to 5. At 00:00:00 it never "
                                             "starts.");
    odd("1111111|00:00:00|*|*|*|||PlayPlaylist|p2",
        "Every day at 00:00:00, play the playlist p2. At 00:00:00 it may start at midnight once after a load, if the "
        "playlist has more than one track, and otherwise never starts.");
    odd("1111111|07:60:05|*|*|*|||Volume|5", "Every day at 08:00:05, set the master volume to 5.");
    odd("1111111|07:60:05|*|*|*|||PlayMessage|gong.mp3",
        "Every day at 08:00:05, play the message gong.mp3. The sound manager is told no start time: hh:mm:ss has two "
        "digits each.");
    odd("1111111|24:00:07|*|*|*|||PlayMessage|gong.mp3",
        "Every day at 24:00:07, play the message gong.mp3. 24:00:07 is no time of day: it is asked for on the evening "
        "before. The sound manager is told no start time: hh:mm:ss has two digits each.");
    odd("1111111|24:00:08|*|*|*|||PlayMessage|gong.mp3",
        "Every day at 24:00:08, play the message gong.mp3. 24:00:08 is no time of day: it never starts. The "
        "sound manager is told no start time: hh:mm:ss has two digits each.");
    odd("1111111|8:30:00|*|*|*|||PlayMessage|gong.mp3",
        "Every day at 08:30:00, play the message gong.mp3. The sound manager is told no start time: hh:mm:ss has two "
        "digits each.");
    odd("1111111|8:30:00|*|*|*|||Volume|5", "Every day at 08:30:00, set the master volume to 5.");
    odd("# closed", "A comment, which the daemon skips: a \"#\" stands before its last character.");
    odd("1111111|08:30:00|*|*|*|||StopMessage # in August",
        "A comment, which the daemon skips: a \"#\" stands before its last character.");
    QTest::newRow("blank") << u" \t"_s << "A blank line, which the daemon skips.";
}

void tst_Explain::ALineIsSaidInWords()
{
    QFETCH(const QString, line);
    QFETCH(const QString, words);
    const CommandCall call;
    const CommandCall::Result result = call.Run({u"explain"_s, line});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, words + u'\n');
    QCOMPARE(result.status, 0);
}

void tst_Explain::ARejectedLineTellsTheReasonAndWhatToWrite()
{
    const CommandCall call;
    QCOMPARE(
        call.Run("explain 1111111|06:00:00|*|*|*|||light|1 a|b 1111111|06:00:00|*|*|*|||Volume|5"),
        (CommandCall::Result{
            2, u"Every day at 06:00:00, set the master volume to 5.\n"_s,
            u"line 1: error: the daemon leaves the line out: task: no task is called \"light\"; did you "
            "mean Light? Write it to the letter (the daemon logs \"Unknown task (99)\")\n"
            "line 2: error: the daemon leaves the line out: line: has 2 of the 8 fields that a line needs; write "
            "days|start time|day|month|year|from|to|task, and "
            "|parameters where there are any (the daemon logs \"Wrong action fields (2 found, at least 8 expected)\")\n"_s}));
}

void tst_Explain::LinesComeFromStandardInput()
{
    const CommandCall call;
    QCOMPARE(call.Run({u"explain"_s, u"-"_s},
                      "# spring\n1111111|06:00:00|*|*|*|||Volume|5\r\n1111111|06:00:00|*|*|*|||StopStream"),
             (CommandCall::Result{0,
                                  u"A comment, which the daemon skips: a \"#\" stands before its last character.\n"
                                  "Every day at 06:00:00, set the master volume to 5.\n"
                                  "Every day at 06:00:00, stop the stream that is playing.\n"_s,
                                  {}}));
}

void tst_Explain::StandardInputIsReadAsAFileIs_data()
{
    QTest::addColumn<QByteArray>("input");

    const QByteArray line = "1111111|06:00:00|*|*|*|||Volume|5";
    QTest::newRow("carriage returns") << line + "\r\r\n" + line + "\r\n";
    QTest::newRow("byte-order mark") << "\xef\xbb\xbf" + line + "\r\n" + line;
}

void tst_Explain::StandardInputIsReadAsAFileIs()
{
    QFETCH(const QByteArray, input);
    const CommandCall call;
    const CommandCall::Result result = call.Run({u"explain"_s, u"-"_s}, input);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, u"Every day at 06:00:00, set the master volume to 5.\n"_s.repeated(2));
}

void tst_Explain::AKnownPlaylistTellsItsTracks()
{
    const CommandCall call;
    call.Write(u"lists/morning"_s, "intro.mp3;60\nnews today.mp3;30\n");
    const CommandCall::Result result =
        call.Run("explain --playlists lists 1111111|06:00:00|*|*|*|||PlayPlaylist|morning");
    QCOMPARE(result.output, u"Every day at 06:00:00, play the playlist morning (2 tracks).\n"_s);
    QCOMPARE(result.status, 0);
}

void tst_Explain::AMissingPlaylistIsRejectedWhereTheFolderIsKnown()
{
    const CommandCall call;
    call.Write(u"lists/morning"_s, "intro.mp3;60\n");
    QCOMPARE(call.Run("explain --playlists lists 1111111|06:00:00|*|*|*|||PlayPlaylist|evening"),
             (CommandCall::Result{2,
                                  {},
                                  u"line 1: error: the daemon leaves the line out: parameters: the playlist "
                                  "\"evening\" cannot be opened: lists/evening; write the name of a readable file of "
                                  "that folder, or bring the file there (the daemon logs \"Playlist file open failed "
                                  "(path=lists/evening); TASK CREATION FAILED\")\n"_s}));
}

void tst_Explain::ANameThatLeadsOutOfTheFolderMakesNoFile()
{
    const CommandCall call;
    const QString outside = call.Folder() + u"/outside"_s;
    const QString name = u"../../../../../../../.."_s + outside;
    const CommandCall::Result result =
        call.Run({u"explain"_s, u"1111111|06:00:00|*|*|*|||PlayPlaylist|%1"_s.arg(name)});
    QCOMPARE(result.status, 2);
    QVERIFY(!QFile::exists(outside));
    QVERIFY2(!result.errors.contains(QDir::tempPath() + u"/ozna"_s), qPrintable(result.errors));
}

void tst_Explain::ControlCharactersAreShownAndNotSent()
{
    const CommandCall call;
    const CommandCall::Result result = call.Run("explain 1111111|06:00:00|*|*|*|||PlayMessage|a\x1b[31mb.mp3");
    QCOMPARE(result.output, u"Every day at 06:00:00, play the message a\\x1b[31mb.mp3.\n"_s);
}

OZNA_CASE(Explain, tst_Explain)
#include "tst_Explain.moc"
