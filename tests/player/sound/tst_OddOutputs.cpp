#include "SoundTest.h"
#include "Suite.h"
#include "sound/OutputAbsence.h"

#include <QSignalSpy>

namespace
{

constexpr qint64 SECOND = 48'000;

} // namespace

// Outputs that open, and do not take sound as they should.
class OddOutputsTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void ADeviceWithoutAPacePlaysAMessage();
    void AnOutputThatOpensAndTakesNothingIsAbsent();
    void AnOutputThatTakesSoundIsBack();
    void AnAbsenceIsTooLongForSome();
};

// It takes everything at once, and in every other run its clock runs ahead of any other.
void OddOutputsTest::ADeviceWithoutAPacePlaysAMessage()
{
    constexpr int TIMES = 6;
    SoundSettings settings;
    settings.output = QStringLiteral("alsa:null");
    for (int time = 0; time < TIMES; ++time)
    {
        Begin(settings);
        const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND / 10), Now_ms() + 300);
        QTRY_VERIFY(HasEnded(id));
        QCOMPARE(*Of(id).ended, QString());
        QVERIFY(Of(id).isReady);
        QVERIFY(Of(id).heard_ms);
    }
}

void OddOutputsTest::AnOutputThatOpensAndTakesNothingIsAbsent()
{
    OutputAbsence absence([] { return SECOND; });
    const QSignalSpy lasts(&absence, &OutputAbsence::Lasts);
    const Piece atOnce;
    for (int time = 0; time < 3; ++time)
    {
        absence.Begin();
        QVERIFY(time > 1 || !absence.IsTooLong(atOnce, false, 0));
        QTest::qWait(500);
        absence.Return();
        QTest::qWait(500);
    }
    absence.Begin();
    QTRY_VERIFY(absence.IsTooLong(atOnce, false, 0));
    QTRY_VERIFY(!lasts.isEmpty());
    // Nor is one of use that stays open.
    absence.Return();
    const auto before = lasts.size();
    QTRY_VERIFY(lasts.size() > before);
}

void OddOutputsTest::AnOutputThatTakesSoundIsBack()
{
    qint64 mixed = 0;
    OutputAbsence absence([&mixed] { return mixed; });
    const QSignalSpy lasts(&absence, &OutputAbsence::Lasts);
    absence.Begin();
    QTRY_COMPARE(lasts.size(), 1);
    absence.Return();
    mixed += SECOND;
    QTest::qWait(4000);
    QCOMPARE(lasts.size(), 1);
    // The next absence is another one.
    absence.Begin();
    QVERIFY(!absence.IsTooLong({}, false, 0));
}

void OddOutputsTest::AnAbsenceIsTooLongForSome()
{
    OutputAbsence absence([] { return 0; });
    const QSignalSpy lasts(&absence, &OutputAbsence::Lasts);
    Piece message;
    Piece list;
    list.place = Piece::Place::PLAYLIST;
    absence.Begin();
    QTRY_COMPARE(lasts.size(), 2);
    QVERIFY(absence.IsTooLong(message, false, 0));
    QVERIFY(!absence.IsTooLong(list, false, 0));
    QVERIFY(!absence.IsTooLong(list, true, 0));
    // What has a moment is of use for two seconds behind it.
    message.due_ms = 10'000;
    QVERIFY(!absence.IsTooLong(message, false, 12'000));
    QVERIFY(absence.IsTooLong(message, false, 12'001));
}

OZNA_CASE(OddOutputs, OddOutputsTest)
#include "tst_OddOutputs.moc"
