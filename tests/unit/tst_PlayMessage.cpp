#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayMessage.h"

using namespace Qt::StringLiterals;

class PlayMessageTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ItIsMadeOfTimeFileAndVolume_data();
    void ItIsMadeOfTimeFileAndVolume();
    void ItIsNeverLateAndHasNoIdentifier();
    void AnAcceptedRequestRuns_data();
    void AnAcceptedRequestRuns();
    void ItIsRunningWhileItAsks();
    void TheVolumesOutcomeIsIgnored_data();
    void TheVolumesOutcomeIsIgnored();
    void AFailedRequestIsLogged_data();
    void AFailedRequestIsLogged();

private:
    static std::unique_ptr<PlayMessage> Gong()
    {
        auto message = std::make_unique<PlayMessage>(u"08:30:00"_s, u"gong.mp3"_s, u"70"_s);
        LogRecorder::Clear();
        return message;
    }
};

void PlayMessageTest::ItIsMadeOfTimeFileAndVolume_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("warned");
    const auto row = [](const char* name, const QString& time, const QString& file, const QString& volume,
                        const QByteArray& text,
                        bool warned) { QTest::newRow(name) << time << file << volume << text << warned; };
    const QString time = u"08:30:00"_s;
    const QString file = u"gong.mp3"_s;
    row("a volume", time, file, u"70"_s, "gong.mp3 @ 08:30:00 (vol=70)", false);
    row("volume 0", time, file, u"0"_s, "gong.mp3 @ 08:30:00 (vol=0)", false);
    row("no volume", time, file, u"-1"_s, "gong.mp3 @ 08:30:00 (vol=-1)", false);
    row("another negative volume", time, file, u"-20"_s, "gong.mp3 @ 08:30:00 (vol=-20)", false);
    row("a volume beyond all", time, file, u"2147483647"_s, "gong.mp3 @ 08:30:00 (vol=2147483647)", false);
    row("a volume that no int holds", time, file, u"2147483648"_s, "gong.mp3 @ 08:30:00 (vol=-1)", true);
    row("a volume with a fraction", time, file, u"70.5"_s, "gong.mp3 @ 08:30:00 (vol=-1)", true);
    row("a volume that is no number", time, file, u"loud"_s, "gong.mp3 @ 08:30:00 (vol=-1)", true);
    row("an empty volume", time, file, u""_s, "gong.mp3 @ 08:30:00 (vol=-1)", true);
    row("an empty file", time, u""_s, u"70"_s, " @ 08:30:00 (vol=70)", false);
    row("percent signs in the file", time, u"100%s.mp3"_s, u"70"_s, "100%s.mp3 @ 08:30:00 (vol=70)", false);
    row("UTF-8 in the file", time, u"caf\u00e9.mp3"_s, u"70"_s, "caf\xc3\xa9.mp3 @ 08:30:00 (vol=70)", false);
    row("the last second", u"23:59:59"_s, file, u"70"_s, "gong.mp3 @ 23:59:59 (vol=70)", false);
    row("a time of one digit each", u"8:5:0"_s, file, u"70"_s, "gong.mp3 @  (vol=70)", false);
    row("a time out of range", u"25:00:00"_s, file, u"70"_s, "gong.mp3 @  (vol=70)", false);
    row("an empty time", u""_s, file, u"70"_s, "gong.mp3 @  (vol=70)", false);
}

void PlayMessageTest::ItIsMadeOfTimeFileAndVolume()
{
    QFETCH(QString, time);
    QFETCH(QString, file);
    QFETCH(QString, volume);
    QFETCH(QByteArray, text);
    QFETCH(bool, warned);
    const PlayMessage message(time, file, volume);
    LogLines lines;
    if (warned)
        lines.append({2, "[tasks/PlayMessage.cpp] Invalid volume=" + volume.toUtf8() + ", not used"});
    lines.append({4, "[tasks/PlayMessage.cpp] TASK CREATED | PlayMessage: " + text});
    EXPECT_LOG(9, (lines));
    EXPECT_REQUESTS(Bus(), {});
}

void PlayMessageTest::ItIsNeverLateAndHasNoIdentifier()
{
    const auto message = Gong();
    QCOMPARE(message->GetDelayable_s(), 0U);
    QCOMPARE(message->m_identifier, QString());
    QCOMPARE(message->m_type, TASK_PLAY_MESSAGE);
    QCOMPARE(message->IsRunning(), false);
    QCOMPARE(message->metaObject()->className(), "PlayMessage");
}

void PlayMessageTest::AnAcceptedRequestRuns_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<QByteArray>("text");
    const QString play = u"soundmanager PlayFile(s:gong.mp3, s:08:30:00)"_s;
    QTest::newRow("with a volume") << u"08:30:00"_s << u"70"_s
                                   << QStringList{u"soundmanager SetPlayerVolume(s:file, d:70)"_s, play}
                                   << "gong.mp3|08:30:00|70"_ba;
    QTest::newRow("with volume 0") << u"08:30:00"_s << u"0"_s
                                   << QStringList{u"soundmanager SetPlayerVolume(s:file, d:0)"_s, play}
                                   << "gong.mp3|08:30:00|0"_ba;
    QTest::newRow("without a volume") << u"08:30:00"_s << u"-1"_s << QStringList{play} << "gong.mp3|08:30:00|-1"_ba;
    QTest::newRow("with a negative volume")
        << u"08:30:00"_s << u"-7"_s << QStringList{play} << "gong.mp3|08:30:00|-7"_ba;
    QTest::newRow("without a time") << u"8:30:00"_s << u"-1"_s
                                    << QStringList{u"soundmanager PlayFile(s:gong.mp3, s:)"_s} << "gong.mp3||-1"_ba;
}

void PlayMessageTest::AnAcceptedRequestRuns()
{
    QFETCH(QString, time);
    QFETCH(QString, volume);
    QFETCH(QStringList, requests);
    QFETCH(QByteArray, text);
    PlayMessage message(time, u"gong.mp3"_s, volume);
    LogRecorder::Clear();
    QCOMPARE(message.Run(), true);
    QCOMPARE(message.IsRunning(), true);
    EXPECT_LOG(9, {{9, "[tasks/PlayMessage.cpp] TASK START@TIME REQUESTED | PlayMessage: " + text}});
    QCOMPARE(Bus().Requests().first().timeout_ms, 3000);
    EXPECT_REQUESTS(Bus(), (requests));
}

void PlayMessageTest::ItIsRunningWhileItAsks()
{
    const auto message = Gong();
    QList<bool> running;
    const auto answerer = [&](const PeerRequest&) {
        running.append(message->IsRunning());
        return PeerReply(0);
    };
    Bus().Answer("SetPlayerVolume", answerer);
    Bus().Answer("PlayFile", answerer);
    message->Run();
    QCOMPARE(running, (QList<bool>{true, true}));
}

void PlayMessageTest::TheVolumesOutcomeIsIgnored_data()
{
    QTest::addColumn<bool>("busError");
    QTest::newRow("refused") << false;
    QTest::newRow("failed on the bus") << true;
}

void PlayMessageTest::TheVolumesOutcomeIsIgnored()
{
    QFETCH(bool, busError);
    if (busError)
        Bus().AnswerBusError("SetPlayerVolume", u"gone"_s);
    else
        Bus().Answer("SetPlayerVolume", 5);
    const auto message = Gong();
    QCOMPARE(message->Run(), true);
    QCOMPARE(Bus().Requests().size(), 2);
    EXPECT_LOG(4, {});
}

void PlayMessageTest::AFailedRequestIsLogged_data()
{
    QTest::addColumn<QString>("busError"); // null: none
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("no reply") << u"Did not receive a reply"_s << 0
                              << "PlayFile request error: Did not receive a reply\n"_ba;
    QTest::newRow("an error without a text") << u""_s << 0 << "PlayFile request error: \n"_ba;
    QTest::newRow("status 3") << QString() << 3 << "PlayFile error: 3\n"_ba;
    QTest::newRow("a negative status") << QString() << -1 << "PlayFile error: -1\n"_ba;
}

void PlayMessageTest::AFailedRequestIsLogged()
{
    QFETCH(QString, busError);
    QFETCH(int, status);
    QFETCH(QByteArray, text);
    if (busError.isNull())
        Bus().Answer("PlayFile", status);
    else
        Bus().AnswerBusError("PlayFile", busError);
    const auto message = Gong();
    QCOMPARE(message->Run(), false);
    QCOMPARE(message->IsRunning(), false);
    EXPECT_LOG(9, {{1, "[tasks/PlayMessage.cpp] " + text}});
}

OZNA_CASE(PlayMessage, PlayMessageTest)
#include "tst_PlayMessage.moc"
