#include "Log.h"
#include "SoundTest.h"
#include "Suite.h"
#include "sound/OutputAbsence.h"

#include <QSignalSpy>

namespace
{

constexpr qint64 SECOND = 48'000;
constexpr const char* ORIGIN = "/com/kestrelix/ozna/soundmanager/soundobj";

} // namespace

// Outputs that cannot be opened, or open and do not take sound as they should.
class OddOutputsTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void WithoutAnOutputARequestEndsAtOnce_data();
    void WithoutAnOutputARequestEndsAtOnce();
    void ADeviceWithoutAPacePlaysAMessage();
    void AnOutputThatOpensAndTakesNothingIsAbsent();
    void AnOutputThatTakesSoundIsBack();
    void AnAbsenceIsTooLongForSome();
};

void OddOutputsTest::WithoutAnOutputARequestEndsAtOnce_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no folder") << QStringLiteral("file:/nonexistent/a.raw")
                               << QStringLiteral("/nonexistent/a.raw: No such file or directory");
    QTest::newRow("a folder") << QStringLiteral("file:/") << QStringLiteral("/: Is a directory");
    QTest::newRow("a device") << QStringLiteral("file:/dev/null")
                              << QStringLiteral("/dev/null: it is neither a file nor a pipe");
    QTest::newRow("an unknown kind") << QStringLiteral("drum")
                                     << QStringLiteral("there is no such kind of output: drum");
}

void OddOutputsTest::WithoutAnOutputARequestEndsAtOnce()
{
    QFETCH(QString, output);
    QFETCH(QString, reason);
    SoundSettings settings;
    settings.output = output;
    Begin(settings);
    const auto id = PlayMessage(Tone(QStringLiteral("a.wav"), SECOND), Now_ms() + 5000);
    QVERIFY(!HasEnded(id));
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 2000);
    QCOMPARE(*Of(id).ended, QStringLiteral("no output: ") + reason);
    QVERIFY(!Of(id).isReady);
    const QString record = QStringLiteral("1 [sound/Output.cpp] OUTPUT NOT OPENED | %1: %2").arg(output, reason);
    EXPECT_LOG(LEVEL_WARNING, {LogLine(record.toUtf8(), ORIGIN)});
}

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
