#include "PlayerTest.h"
#include "Suite.h"
#include "service/Requests.h"

#include <QElapsedTimer>
#include <QFile>

using namespace Qt::StringLiterals;

// A message: found, answered, heard and ended.
class tst_PlayFile final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void IsAnsweredWhenItCanBeHeardAndEndsOnce();
    void AnEndRightAtOnceComesBehindTheAnswer();
    void WhatCannotBePlayedIsRefusedAndHasNoEnd();
    void WhatFailsLaterEndsLikeAnyOther();
    void WhatTakesTooLongIsRefusedBeforeTheCallerGivesUp();
    void WhatIsReadyInTimeIsNotEndedLater();
    void TheStartTimeIsTheNearestMoment_data();
    void TheStartTimeIsTheNearestMoment();
    void ANameStaysWithinTheFolder_data();
    void ANameStaysWithinTheFolder();
    void AStopEndsWhatPlaysAndWhatWaits();
    void WhatIsStoppedBeforeItIsReadyIsRefused();
    void AStopOfNothingIsAccepted();
    void EachEndsWhenTheProcessDoes();
};

void tst_PlayFile::IsAnsweredWhenItCanBeHeardAndEndsOnce()
{
    Write(u"media/gong.wav"_s);
    Ask("PlayFile", {u"gong.wav"_s, u"12:00:05"_s});
    QCOMPARE(Seen(0), QStringList());
    QCOMPARE(Shown(0), u"file gong.wav @ +5000 100"_s);
    Q_EMIT Sound().Ready(1);
    QCOMPARE(Seen(1), QStringList(u"PlayFile: 0"_s));
    Q_EMIT Sound().Started(1, Time().Utc_ms() + 5000);
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(1), QStringList(u"PlayFileCompleted(gong.wav)"_s));
    EXPECT_LOG(LEVEL_DETAIL,
               {{"4 [service/Requests.cpp] ASKED FOR | file: gong.wav @ 12:00:05.000", SoundManager::PATH},
                {"4 [service/Requests.cpp] STARTED | file: gong.wav @ 12:00:05.000", SoundManager::PATH},
                {"4 [service/Requests.cpp] ENDED | file: gong.wav", SoundManager::PATH}});
}

void tst_PlayFile::AnEndRightAtOnceComesBehindTheAnswer()
{
    Write(u"media/gong.wav"_s);
    Ask("PlayFile", {u"gong.wav"_s, QString()});
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(2), QStringList({u"PlayFile: 0"_s, u"PlayFileCompleted(gong.wav)"_s}));
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(0), QStringList());
}

void tst_PlayFile::WhatCannotBePlayedIsRefusedAndHasNoEnd()
{
    Write(u"media/gong.wav"_s);
    Ask("PlayFile", {u"gong.wav"_s, u"12:00:05"_s});
    Q_EMIT Sound().Ended(1, u"no output"_s);
    QCOMPARE(Seen(1), QStringList(u"PlayFile: 5"_s));
    EXPECT_LOG(LEVEL_WARNING, {{"1 [service/Requests.cpp] ENDED | file: gong.wav: no output", SoundManager::PATH}});
}

void tst_PlayFile::WhatFailsLaterEndsLikeAnyOther()
{
    Write(u"media/gong.wav"_s);
    Ask("PlayFile", {u"gong.wav"_s, u"12:00:05"_s});
    Q_EMIT Sound().Ready(1);
    Q_EMIT Sound().Ended(1, u"the output is gone"_s);
    QCOMPARE(Seen(2), QStringList({u"PlayFile: 0"_s, u"PlayFileCompleted(gong.wav)"_s}));
    EXPECT_LOG(LEVEL_WARNING,
               {{"1 [service/Requests.cpp] ENDED | file: gong.wav: the output is gone", SoundManager::PATH}});
}

void tst_PlayFile::WhatTakesTooLongIsRefusedBeforeTheCallerGivesUp()
{
    Write(u"media/gong.wav"_s);
    QElapsedTimer timer;
    timer.start();
    Ask("PlayFile", {u"gong.wav"_s, u"12:00:05"_s});
    QCOMPARE(Seen(1), QStringList(u"PlayFile: 5"_s));
    static_assert(Requests::ANSWERED_WITHIN_MS < 2000);
    QVERIFY2(timer.elapsed() >= Requests::ANSWERED_WITHIN_MS && timer.elapsed() < SoundManager::TIMEOUT_MS,
             qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(Sound().TakeCalls(), QStringList(u"stop 1"_s));
    // It was refused: what becomes of it is nobody's business any more.
    Q_EMIT Sound().Ready(1);
    Q_EMIT Sound().Ended(1, {});
    QCOMPARE(Seen(0), QStringList());
    EXPECT_LOG(LEVEL_WARNING,
               {{"1 [service/Requests.cpp] ENDED | file: gong.wav: it was not ready in time", SoundManager::PATH}});
}

void tst_PlayFile::WhatIsReadyInTimeIsNotEndedLater()
{
    Write(u"media/gong.wav"_s);
    Ask("PlayFile", {u"gong.wav"_s, u"12:00:05"_s});
    Q_EMIT Sound().Ready(1);
    QCOMPARE(Seen(1), QStringList(u"PlayFile: 0"_s));
    static_cast<void>(WaitUntil([] { return false; }, Requests::ANSWERED_WITHIN_MS + 100));
    QCOMPARE(Sound().TakeCalls(), QStringList());
    QCOMPARE(Seen(0), QStringList());
}

void tst_PlayFile::TheStartTimeIsTheNearestMoment_data()
{
    QTest::addColumn<QTime>("now");
    QTest::addColumn<QString>("startTime");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char* name, QTime now, const char* startTime, const char* shown) {
        QTest::newRow(name) << now << QString::fromLatin1(startTime) << QString::fromLatin1(shown);
    };
    row("ahead", {8, 29, 52}, "08:30:00", "file gong.wav @ +8000 100");
    row("now", {8, 30}, "08:30:00", "file gong.wav 100");
    row("past", {8, 30, 1}, "08:30:00", "file gong.wav 100");
    row("half a day past", {20, 29, 59}, "08:30:00", "file gong.wav 100");
    row("tomorrow's", {23, 59, 55}, "00:00:02", "file gong.wav @ +7000 100");
    row("yesterday's", {0, 0, 2}, "23:59:59", "file gong.wav 100");
    row("empty", {8, 0}, "", "file gong.wav 100");
    row("no time", {8, 0}, "25:00:00", "file gong.wav 100");
    row("another form", {8, 0}, "8:30:00", "file gong.wav 100");
}

void tst_PlayFile::TheStartTimeIsTheNearestMoment()
{
    QFETCH(const QTime, now);
    QFETCH(const QString, startTime);
    QFETCH(const QString, shown);
    Write(u"media/gong.wav"_s);
    Time().SetLocal(now);
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, startTime}), 0);
    QCOMPARE(Shown(0), shown);
}

void tst_PlayFile::ANameStaysWithinTheFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("record");
    const auto row = [](const char* title, const QString& name, int status, const QString& record = {}) {
        QTest::newRow(title) << name << status << record;
    };
    const QString outside = u"1 [service/GuardedFolder.cpp] \"%1\" is no name within %M"_s;
    row("below", u"gong.wav"_s, 0);
    row("in a folder below", u"bells/low.wav"_s, 0);
    row("absolute, inside", u"%M/gong.wav"_s, 0);
    row("up and down again", u"bells/../gong.wav"_s, 0);
    row("a link inside", u"link.wav"_s, 0);
    row("empty", QString(), 2, outside.arg(QString()));
    row("up", u"../secret.wav"_s, 2, outside.arg(u"../secret.wav"_s));
    row("up to nothing", u"../none.wav"_s, 2, outside.arg(u"../none.wav"_s));
    row("absolute", u"/etc/hostname"_s, 2, outside.arg(u"/etc/hostname"_s));
    row("a link that leads out", u"out.wav"_s, 2, outside.arg(u"out.wav"_s));
    row("a folder that leads out", u"away/secret.wav"_s, 2, outside.arg(u"away/secret.wav"_s));
    row("the folder itself", u"."_s, 2, outside.arg(u"."_s));
    row("missing", u"none.wav"_s, 3, u"1 [service/GuardedFolder.cpp] %M/none.wav is not there"_s);
    row("a folder", u"bells"_s, 3, u"1 [service/GuardedFolder.cpp] %M/bells is no file that can be read"_s);
}

void tst_PlayFile::ANameStaysWithinTheFolder()
{
    QFETCH(QString, name);
    QFETCH(const int, status);
    QFETCH(QString, record);
    Write(u"media/gong.wav"_s);
    Write(u"media/bells/low.wav"_s);
    Write(u"secret.wav"_s);
    QVERIFY(QFile::link(Path(u"media/gong.wav"_s), Path(u"media/link.wav"_s)));
    QVERIFY(QFile::link(Path(u"secret.wav"_s), Path(u"media/out.wav"_s)));
    QVERIFY(QFile::link(Path({}), Path(u"media/away"_s)));
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {name.replace(u"%M"_s, Path(u"media"_s)), QString()}), status);
    QCOMPARE(Sound().Pieces().size(), status == 0 ? 1 : 0);
    record.replace(u"%M"_s, Path(u"media"_s));
    EXPECT_LOG(LEVEL_WARNING, (record.isEmpty() ? LogLines() : LogLines{{record.toUtf8(), SoundManager::PATH}}));
}

void tst_PlayFile::AStopEndsWhatPlaysAndWhatWaits()
{
    Write(u"media/gong.wav"_s);
    Write(u"media/bye.wav"_s);
    Sound().BeReady();
    QCOMPARE(Call("PlayFile", {u"gong.wav"_s, QString()}), 0);
    QCOMPARE(Call("PlayFile", {u"bye.wav"_s, u"12:00:05"_s}), 0);
    QCOMPARE(Call("StopPlay", {u"file"_s, QString()}), 0);
    QCOMPARE(Seen(2), QStringList({u"PlayFileCompleted(gong.wav)"_s, u"PlayFileCompleted(bye.wav)"_s}));
    QCOMPARE(Sound().TakeCalls(), QStringList({u"stop 1"_s, u"stop 2"_s}));
    // What was stopped is no request any more.
    QCOMPARE(Call("PlayFile", {u"bye.wav"_s, u"12:00:05"_s}), 0);
    QCOMPARE(Sound().Pieces().size(), 3);
}

void tst_PlayFile::WhatIsStoppedBeforeItIsReadyIsRefused()
{
    Write(u"media/gong.wav"_s);
    Ask("PlayFile", {u"gong.wav"_s, u"12:00:05"_s});
    QCOMPARE(Call("StopPlay", {u"file"_s, QString()}), 0);
    QCOMPARE(Seen(1), QStringList(u"PlayFile: 6"_s));
}

void tst_PlayFile::AStopOfNothingIsAccepted()
{
    for (const char* source : {"file", "playlist", "stream", "radiofm", "aux"})
        QCOMPARE(Call("StopPlay", {QString::fromLatin1(source), QString()}), 0);
    QCOMPARE(Call("StopPlay", {u"gramophone"_s, QString()}), 1);
    EXPECT_LOG(LEVEL_WARNING,
               {{"1 [service/SoundObject.cpp] StopPlay(gramophone): an argument is out of its range or its form",
                 SoundManager::PATH}});
}

void tst_PlayFile::EachEndsWhenTheProcessDoes()
{
    Write(u"media/gong.wav"_s);
    Write(u"media/bye.wav"_s);
    Ask("PlayFile", {u"gong.wav"_s, QString()});
    Q_EMIT Sound().Ready(1);
    Ask("PlayFile", {u"bye.wav"_s, u"12:00:05"_s});
    QCOMPARE(Seen(1), QStringList(u"PlayFile: 0"_s));
    Service().End();
    QCOMPARE(Seen(2), QStringList({u"PlayFileCompleted(gong.wav)"_s, u"PlayFile: 7"_s}));
}

OZNA_CASE(PlayFile, tst_PlayFile)

#include "tst_PlayFile.moc"
