#include "PeerAnswers.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayPlaylist.h"

#include <SoundManagerProxy.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

constexpr int SOUND_TIMEOUT_MS = 3000;
constexpr int PLAYLIST_TIMEOUT_MS = 5000;

void AddAnswers()
{
    QTest::addColumn<PeerAnswer>("answer");
    for (const PeerAnswer& answer : PeerAnswers::All())
        QTest::newRow(answer.name) << answer;
}

} // namespace

// Asking for a playlist.
class PlayPlaylistTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ARequestCarriesTheParameters_data();
    void ARequestCarriesTheParameters();
    void TheAnswerDecides_data() { AddAnswers(); }
    void TheAnswerDecides();
    void TheVolumesAnswerIsIgnored_data() { AddAnswers(); }
    void TheVolumesAnswerIsIgnored();
    void AnyEarlierTimeoutComesBack_data() { AddAnswers(); }
    void AnyEarlierTimeoutComesBack();
    void TheTaskRunsWhileItAsks();

private:
    void Begin() override;
    void End() override;

    // Makes the task, and forgets what that logs.
    PlayPlaylist& Make(const QString& volume);

    std::optional<PlayPlaylist> m_task;
};

void PlayPlaylistTest::Begin()
{
    Data().WritePlaylist("track1.mp3;60\ntrack2.mp3;30\n", u"xmas"_s);
}

void PlayPlaylistTest::End()
{
    m_task.reset();
    Scheduler::m_soundManProxy->setTimeout(SOUND_TIMEOUT_MS);
}

PlayPlaylist& PlayPlaylistTest::Make(const QString& volume)
{
    m_task.emplace(u"08:30:00"_s, u"xmas"_s, volume, u"id"_s);
    LogRecorder::Clear();
    return *m_task;
}

void PlayPlaylistTest::ARequestCarriesTheParameters_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("volume");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<QByteArray>("logged");
    const QString request = u"soundmanager PlayPlaylist(s:xmas, s:%1, u:1, s:%2, b:false)"_s;
    const QString time = u"08:30:00"_s;
    const QString plain = request.arg(u"id"_s, time);
    const auto volume = [&](const char* text, const char* sent) {
        const QString first = u"soundmanager SetPlayerVolume(s:playlist, d:%1)"_s.arg(QLatin1String(sent));
        QTest::addRow("volume %s", text) << time << QString::fromLatin1(text) << u"id"_s << QStringList{first, plain}
                                         << "xmas|1|08:30:00|" + QByteArray(sent);
    };
    volume("70", "70");
    volume("0", "0");
    volume("+7", "7");
    const auto noVolume = [&](const char* text, const char* shown) {
        QTest::addRow("volume \"%s\" is left alone", text)
            << time << QString::fromLatin1(text) << u"id"_s << QStringList{plain}
            << "xmas|1|08:30:00|" + QByteArray(shown);
    };
    noVolume("-1", "-1");
    noVolume("-5", "-5");
    noVolume("", "-1");
    noVolume("loud", "-1");
    for (const QString& identifier : {u""_s, u"a b"_s, u"No\u00ebl"_s})
        QTest::addRow("identifier \"%s\"", identifier.toUtf8().constData())
            << time << u"-1"_s << identifier << QStringList{request.arg(identifier, time)} << "xmas|1|08:30:00|-1"_ba;
    QTest::newRow("a time that is none") << u"8:30:00"_s << u"-1"_s << u"id"_s
                                         << QStringList{request.arg(u"id"_s, u""_s)} << "xmas|1||-1"_ba;
}

void PlayPlaylistTest::ARequestCarriesTheParameters()
{
    QFETCH(QString, time);
    QFETCH(QString, volume);
    QFETCH(QString, identifier);
    QFETCH(QStringList, requests);
    QFETCH(QByteArray, logged);
    m_task.emplace(time, u"xmas"_s, volume, identifier);
    LogRecorder::Clear();
    QVERIFY(m_task->Run());
    for (const PeerRequest& request : Bus().Requests())
        QCOMPARE(request.timeout_ms, request.method == "PlayPlaylist"_L1 ? PLAYLIST_TIMEOUT_MS : SOUND_TIMEOUT_MS);
    EXPECT_REQUESTS(Bus(), (requests));
    EXPECT_LOG(9, {{4, "[tasks/PlayPlaylist.cpp] Requesting PlayPlaylist..."},
                   {4, "[tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: " + logged}});
}

void PlayPlaylistTest::TheAnswerDecides()
{
    QFETCH(PeerAnswer, answer);
    PlayPlaylist& task = Make(u"70"_s);
    Bus().Answer("PlayPlaylist", [&answer](const PeerRequest&) { return answer.reply; });
    QCOMPARE(task.Run(), answer.IsAccepted());
    QCOMPARE(task.IsRunning(), answer.IsAccepted());
    // What failed counts as played: it is not tried again late.
    QCOMPARE(task.IsCompleted(), !answer.IsAccepted());
    QCOMPARE(Scheduler::m_soundManProxy->timeout(), SOUND_TIMEOUT_MS);
    LogLines log{{4, "[tasks/PlayPlaylist.cpp] Requesting PlayPlaylist..."}};
    if (answer.isBusError)
        log.append({1, "[tasks/PlayPlaylist.cpp] PlayPlaylist request error: " + answer.error});
    else if (answer.status != 0)
        log.append({1, answer.Filled("[tasks/PlayPlaylist.cpp] PlayPlaylist error: {status}")});
    else
        log.append({4, "[tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: xmas|1|08:30:00|70"});
    EXPECT_LOG(9, (log));
}

void PlayPlaylistTest::TheVolumesAnswerIsIgnored()
{
    QFETCH(PeerAnswer, answer);
    PlayPlaylist& task = Make(u"70"_s);
    Bus().Answer("SetPlayerVolume", [&answer](const PeerRequest&) { return answer.reply; });
    QVERIFY(task.Run());
    QVERIFY(task.IsRunning());
    QCOMPARE(Bus().Requests().size(), 2);
    EXPECT_LOG(9, {{4, "[tasks/PlayPlaylist.cpp] Requesting PlayPlaylist..."},
                   {4, "[tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: xmas|1|08:30:00|70"}});
}

void PlayPlaylistTest::AnyEarlierTimeoutComesBack()
{
    QFETCH(PeerAnswer, answer);
    Bus().Answer("PlayPlaylist", [&answer](const PeerRequest&) {
        return Scheduler::m_soundManProxy->timeout() == PLAYLIST_TIMEOUT_MS ? answer.reply : PeerReply(99);
    });
    for (const int earlier_ms : {-1, 1, 25000})
    {
        PlayPlaylist& task = Make(u"70"_s);
        Scheduler::m_soundManProxy->setTimeout(earlier_ms);
        QCOMPARE(task.Run(), answer.IsAccepted());
        QCOMPARE(Scheduler::m_soundManProxy->timeout(), earlier_ms);
    }
    LogRecorder::Clear();
}

void PlayPlaylistTest::TheTaskRunsWhileItAsks()
{
    PlayPlaylist& task = Make(u"70"_s);
    task.SetCompleted(true);
    QStringList states;
    const auto note = [&](const PeerRequest& request) {
        states.append(u"%1 %2 %3"_s.arg(request.method).arg(task.IsRunning()).arg(task.IsCompleted()));
        return PeerReply(0);
    };
    Bus().Answer("SetPlayerVolume", note);
    Bus().Answer("PlayPlaylist", note);
    QVERIFY(task.Run());
    QCOMPARE(states, (QStringList{u"SetPlayerVolume 1 0"_s, u"PlayPlaylist 1 0"_s}));
}

OZNA_CASE(PlayPlaylist, PlayPlaylistTest)
#include "tst_PlayPlaylist.moc"
