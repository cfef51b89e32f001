#include "Log.h"
#include "MissedTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

namespace
{

const QString GONG = u"08:29:52 PlayFile ss gong.mp3 08:30:00"_s;

QString Playlist(const char* time, int track)
{
    return u"%1 PlayPlaylist ssusb day  %2 08:30:00 false"_s.arg(QLatin1String(time)).arg(track);
}

} // namespace

// The clock is set around a message or a playlist, which may play or have ended.
class StepsWhilePlayingTest final : public MissedTest
{
    Q_OBJECT
private Q_SLOTS:
    void APlaylistIsJoinedLate();
    void APlaylistThatHasEndedIsNotJoinedAgain();
    void AMessageThatPlaysIsNotAskedForAgain();
    void AMessageThatHasEndedIsAskedForAgain();
};

void StepsWhilePlayingTest::APlaylistIsJoinedLate()
{
    // In the first track, in the second, shortly before the end of its tolerance, and with that, past the last track.
    for (const auto& [late_s, track] : {std::pair(7, 2), {65, 3}, {90, 3}, {91, 4}})
    {
        WritePlaylist();
        StartBefore(60'000, {"08:30:00 PlayPlaylist|day"});
        Pass(3);
        Time().SetLocal(WEDNESDAY, DUE.addSecs(late_s));
        Pass(60);
        const QTime found = DUE.addSecs(late_s + 3);
        QCOMPARE(TakeRequests(), QStringList{Playlist(found.toString().toLatin1(), track)});
        EXPECT_LOG(LEVEL_WARNING,
                   {QByteArray("2 [Action.cpp] Task PlayPlaylist IsDelayed but still valid (accumulated delay: ") +
                    QByteArray::number(late_s + 3) + " s, tolerated delay: 94 s)"});
    }
}

void StepsWhilePlayingTest::APlaylistThatHasEndedIsNotJoinedAgain()
{
    WritePlaylist();
    StartBefore(15'000, {"08:30:00 PlayPlaylist|day"});
    Pass(160);
    QCOMPARE(TakeRequests(), QStringList{Playlist("08:29:52", 1)});
    EndPlaylist();
    Time().SetLocal(WEDNESDAY, QTime(8, 30, 20));
    Pass(60);
    QCOMPARE(TakeRequests(), QStringList());
    // In time it is another matter.
    Time().SetLocal(WEDNESDAY, QTime(8, 29));
    Pass(90);
    QCOMPARE(TakeRequests(), QStringList{Playlist("08:29:52", 1)});
}

void StepsWhilePlayingTest::AMessageThatPlaysIsNotAskedForAgain()
{
    StartBefore(15'000, {"08:30:00 PlayMessage|gong.mp3"});
    Pass(10);
    QCOMPARE(TakeRequests(), QStringList{GONG});
    Time().Step_s(-60);
    Pass(120);
    QCOMPARE(TakeRequests(), QStringList());
}

void StepsWhilePlayingTest::AMessageThatHasEndedIsAskedForAgain()
{
    StartBefore(15'000, {"08:30:00 PlayMessage|gong.mp3"});
    Pass(10);
    QCOMPARE(TakeRequests(), QStringList{GONG});
    Time().Step_s(-60);
    Pass(20);
    EndMessage();
    Pass(100);
    QCOMPARE(TakeRequests(), QStringList{GONG});
}

OZNA_CASE(StepsWhilePlaying, StepsWhilePlayingTest)
#include "tst_StepsWhilePlaying.moc"
