#include "Rows.h"
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
    void WithoutATimeItAsksForNone();

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
    const QString time = u"08:30:00"_s;
    const QString file = u"gong.mp3"_s;
    Rows<QString, QString, QString, QByteArray, bool>::Add({
        {"a volume", time, file, u"70"_s, "gong.mp3 @ 08:30:00 (vol=70)", false},
        {"volume 0", time, file, u"0"_s, "gong.mp3 @ 08:30:00 (vol=0)", false},
        {"no volume", time, file, u"-1"_s, "gong.mp3 @ 08:30:00 (vol=-1)", false},
        {"another negative volume", time, file, u"-20"_s, "gong.mp3 @ 08:30:00 (vol=-20)", false},
        {"a volume beyond all", time, file, u"2147483647"_s, "gong.mp3 @ 08:30:00 (vol=2147483647)", false},
        {"a volume that no int holds", time, file, u"2147483648"_s, "gong.mp3 @ 08:30:00 (vol=-1)", true},
        {"a volume with a fraction", time, file, u"70.5"_s, "gong.mp3 @ 08:30:00 (vol=-1)", true},
        {"a volume that is no number", time, file, u"loud"_s, "gong.mp3 @ 08:30:00 (vol=-1)", true},
        {"an empty volume", time, file, u""_s, "gong.mp3 @ 08:30:00 (vol=-1)", true},
        {"an empty file", time, u""_s, u"70"_s, " @ 08:30:00 (vol=70)", false},
        {"percent signs in the file", time, u"100%s.mp3"_s, u"70"_s, "100%s.mp3 @ 08:30:00 (vol=70)", false},
        {"UTF-8 in the file", time, u"caf\u00e9.mp3"_s, u"70"_s, "caf\xc3\xa9.mp3 @ 08:30:00 (vol=70)", false},
        {"the last second", u"23:59:59"_s, file, u"70"_s, "gong.mp3 @ 23:59:59 (vol=70)", false},
        {"a time of one digit each", u"8:5:0"_s, file, u"70"_s, "gong.mp3 @  (vol=70)", false},
        {"a time out of range", u"25:00:00"_s, file, u"70"_s, "gong.mp3 @  (vol=70)", false},
        {"an empty time", u""_s, file, u"70"_s, "gong.mp3 @  (vol=70)", false},
    });
}

void PlayMessageTest::ItIsMadeOfTimeFileAndVolume()
{
    const auto& [time, file, volume, text, warned] = Rows<QString, QString, QString, QByteArray, bool>::Current();
    const PlayMessage message(time, file, volume);
    LogLines lines;
    if (warned)
        lines.append("2 [tasks/PlayMessage.cpp] Invalid volume=" + volume.toUtf8() + ", not used");
    lines.append("4 [tasks/PlayMessage.cpp] TASK CREATED | PlayMessage: " + text);
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

void PlayMessageTest::WithoutATimeItAsksForNone()
{
    PlayMessage message(u"8:30:00"_s, u"gong.mp3"_s, u"-1"_s);
    LogRecorder::Clear();
    QCOMPARE(message.Run(), true);
    EXPECT_LOG(9, {"9 [tasks/PlayMessage.cpp] TASK START@TIME REQUESTED | PlayMessage: gong.mp3||-1"});
    EXPECT_REQUESTS(Bus(), {u"sound.PlayFile ss gong.mp3 "_s});
}

OZNA_CASE(PlayMessage, PlayMessageTest)
#include "tst_PlayMessage.moc"
