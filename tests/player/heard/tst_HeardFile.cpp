#include "HeardTest.h"
#include "Rows.h"
#include "Suite.h"
#include "ear/Gong.h"

using namespace Qt::StringLiterals;

// A message sounds at its second, and its end is told.
class HeardFile : public HeardTest
{
    Q_OBJECT
private Q_SLOTS:
    void ItSoundsAtItsSecond_data();
    void ItSoundsAtItsSecond();
    void APastOrInvalidTimeIsAtOnce_data();
    void APastOrInvalidTimeIsAtOnce();
    void WhatCannotBePlayedIsRefused_data();
    void WhatCannotBePlayedIsRefused();
    void AnOffsetMovesItsStart();
    void TheSameRequestIsOneSound();
    void AStopEndsWhatWaits();
};

namespace
{

// mp3 has a lead-in of its encoder's, and a player that knows it leaves it out.
constexpr double LEAD_IN_MS = 60;

} // namespace

void HeardFile::ItSoundsAtItsSecond_data()
{
    Rows<QString, double>::Add({{"wav", u"wav"_s, EXACT_MS},
                                {"flac", u"flac"_s, EXACT_MS},
                                {"ogg", u"ogg"_s, EXACT_MS},
                                {"opus", u"opus"_s, EXACT_MS},
                                {"mp3", u"mp3"_s, LEAD_IN_MS}});
}

void HeardFile::ItSoundsAtItsSecond()
{
    const auto& [suffix, bound_ms] = Rows<QString, double>::Current();
    const QString name = u"gong."_s + suffix;
    WriteSound(name, Gong::Samples());
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(3000);
    QCOMPARE(Client().PlayFile(name, TimeText(due_ms)), 0);
    QVERIFY(QDateTime::currentMSecsSinceEpoch() < due_ms);
    QVERIFY(WaitForSounds(1));
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted "_s + name));
    Pause(300);
    QCOMPARE(Client().Signals(), QStringList{u"PlayFileCompleted "_s + name});
    const std::vector<Ear::Heard> sounds = Hearing().Sounds();
    QCOMPARE(sounds.size(), size_t{1});
    const double error_ms = sounds[0].at_ms - static_cast<double>(due_ms);
    const QByteArray found = QByteArray::number(error_ms) + " ms by the count of samples, arrived " +
                             QByteArray::number(sounds[0].arrived_ms - static_cast<double>(due_ms));
    qInfo("%s", found.constData());
    QVERIFY2(qAbs(error_ms) < bound_ms, found.constData());
    QCOMPARE(StopPlayer(), 0);
}

void HeardFile::APastOrInvalidTimeIsAtOnce_data()
{
    Rows<QString>::Add({{"none", QString()},
                        {"a minute ago", TimeText(QDateTime::currentMSecsSinceEpoch() - 60'000)},
                        {"no time", u"25:00:00"_s},
                        {"words", u"noon"_s}});
}

void HeardFile::APastOrInvalidTimeIsAtOnce()
{
    const QString time = Rows<QString>::Current();
    WriteSound(u"gong.wav"_s, Gong::Samples());
    QVERIFY(StartPlayer());
    const auto asked_ms = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, time), 0);
    QVERIFY(WaitForSounds(1));
    const double delay_ms = Hearing().Sounds()[0].at_ms - asked_ms;
    qInfo("heard %.0f ms after the request", delay_ms);
    QVERIFY2(delay_ms < 3000, qPrintable(QString::number(delay_ms)));
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted gong.wav"_s));
}

void HeardFile::WhatCannotBePlayedIsRefused_data()
{
    Rows<QString>::Add({{"not there", u"none.wav"_s},
                        {"rubbish", u"rubbish.wav"_s},
                        {"empty", u"empty.wav"_s},
                        {"a folder", u"folder.wav"_s},
                        {"out of the folder", u"../secret.wav"_s},
                        {"an absolute name", u"/etc/passwd"_s},
                        {"a link that leads out", u"link.wav"_s},
                        {"no name", QString()}});
}

void HeardFile::WhatCannotBePlayedIsRefused()
{
    const QString name = Rows<QString>::Current();
    WriteFile(MediaPath(u"rubbish.wav"_s), QByteArray(5000, 'x'));
    WriteFile(MediaPath(u"empty.wav"_s), {});
    QVERIFY(QDir(MediaPath(QString())).mkdir(u"folder.wav"_s));
    MediaFiles::Write(Path(u"secret.wav"_s), Gong::Samples());
    QVERIFY(QFile::link(Path(u"secret.wav"_s), MediaPath(u"link.wav"_s)));
    QVERIFY(StartPlayer());
    const int status = Client().PlayFile(name);
    QVERIFY2(status > 0, qPrintable(QString::number(status)));
    // What is played next is all that is heard, and ended.
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    QCOMPARE(Client().PlayFile(u"gong.wav"_s), 0);
    QVERIFY(WaitForSounds(1));
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted gong.wav"_s));
    QCOMPARE(Client().Signals().size(), 1);
    QCOMPARE(Hearing().Sounds().size(), size_t{1});
    Expect({name});
}

void HeardFile::AnOffsetMovesItsStart()
{
    WriteSettings("Offset_ms=-40\n");
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(3000);
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(WaitForSounds(1));
    const double error_ms = Hearing().Sounds()[0].at_ms - static_cast<double>(due_ms);
    QVERIFY2(qAbs(error_ms + 40) < EXACT_MS, qPrintable(QString::number(error_ms)));
}

void HeardFile::TheSameRequestIsOneSound()
{
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(3000);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(WaitForSounds(1));
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted gong.wav"_s));
    Pause(1000);
    QCOMPARE(Client().Signals().size(), 1);
    QCOMPARE(Hearing().Sounds().size(), size_t{1});
}

void HeardFile::AStopEndsWhatWaits()
{
    WriteSound(u"gong.wav"_s, Gong::Samples(300));
    QVERIFY(StartPlayer());
    const qint64 due_ms = MomentAhead_ms(3000);
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    QCOMPARE(Client().Call("StopPlay", {u"file"_s, QString()}), 0);
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted gong.wav"_s));
    // Asked for again, it sounds once.
    QCOMPARE(Client().PlayFile(u"gong.wav"_s, TimeText(due_ms)), 0);
    QVERIFY(WaitForSounds(1));
    QVERIFY(Client().WaitForSignal(u"PlayFileCompleted gong.wav"_s, 2));
    QCOMPARE(Hearing().Sounds().size(), size_t{1});
    QVERIFY(qAbs(Hearing().Sounds()[0].at_ms - static_cast<double>(due_ms)) < EXACT_MS);
}

OZNA_CASE(HeardFile, HeardFile)
#include "tst_HeardFile.moc"
