#include "EveryKind.h"
#include "Suite.h"

using namespace Lines;

// The requests of every kind of task, with their exact signatures, and what is logged for every answer.
class EveryKindAndAnswer : public EveryKind
{
    Q_OBJECT

private Q_SLOTS:
    void IsRequestedWithItsSignature();
    void IsLoggedWhenRefused();
    void IsLoggedWhenItFailsOnTheBus();
    void IsLoggedWhenThePeersAreAbsent();
    void CountsAsAcceptedWhenTheAnswerIsNoNumber_data();
    void CountsAsAcceptedWhenTheAnswerIsNoNumber();
    void RadioThatCannotBeTunedIsOn();
    void LightThatCannotBeSwitchedIsLogged();

private:
    void CompareFailures(const QString& message);
};

namespace
{

QStringList AcceptedLines()
{
    return {
        QStringLiteral("9 [tasks/PlayMessage.cpp] TASK START@TIME REQUESTED | PlayMessage: gong.mp3|08:30:00|-1"),
        QStringLiteral("5 [tasks/PlayPlaylist.cpp] PlayPlaylist NOT delayed: will start from track 1"),
        QStringLiteral("4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist..."),
        QStringLiteral("4 [tasks/PlayPlaylist.cpp] TASK START@TIME REQUESTED | PlayPlaylist: day|1|08:30:00|30"),
        QStringLiteral("4 [tasks/Light.cpp] TASK REQUESTED | Light: 1"),
        QStringLiteral("9 [tasks/Amplifiers.cpp] TASK REQUESTED | Amplifiers: 0x12c"),
        QStringLiteral("4 [tasks/Volume.cpp] TASK REQUESTED | Volume: -5"),
        QStringLiteral("9 [tasks/Camera.cpp] Enabling"),
        QStringLiteral("9 [tasks/Camera.cpp] TASK REQUESTED | EnableCamera:1"),
        QStringLiteral("9 [tasks/CpuFreq.cpp] TASK EXECUTED | CpuFreq: 456"),
        QStringLiteral("9 [tasks/Gps.cpp] TASK REQUESTED | Gps: 1"),
        QStringLiteral("9 [tasks/Lan.cpp] TASK REQUESTED | Lan: 1"),
        QStringLiteral("9 [tasks/Lan.cpp] TASK REQUESTED | Lan: 0"),
        QStringLiteral("9 [tasks/Photo.cpp] Taking single photo"),
        QStringLiteral("4 [tasks/Photo.cpp] TASK REQUESTED | Photo"),
        QStringLiteral("9 [tasks/Photo.cpp] Taking multiple photo"),
        QStringLiteral("4 [tasks/Photo.cpp] TASK REQUESTED | Photo: interval=10 s, num=3, "),
        QStringLiteral("9 [tasks/StopMessage.cpp] TASK REQUESTED | StopPlay(file)"),
        QStringLiteral("9 [tasks/StopPlaylist.cpp] TASK REQUESTED | StopPlay(playlist)"),
        QStringLiteral("9 [tasks/StopStream.cpp] TASK REQUESTED | StopPlay(stream)"),
        QStringLiteral("9 [tasks/StopRadioFm.cpp] TASK REQUESTED | StopPlay(radiofm)"),
        QStringLiteral("5 [tasks/PlayStream.cpp] PlayStream setup done: uri=rtsp://10.0.0.5:8554/live"),
        QStringLiteral("9 [tasks/PlayStream.cpp] TASK START REQUESTED | PlayStream: rtsp://10.0.0.5:8554/live|40"),
        QStringLiteral("9 [tasks/PlayRadioFm.cpp] Requesting SoundManager()->PlayRadioFm()"),
        QStringLiteral("9 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm: enable radio. Now set frequency..."),
        QStringLiteral("9 [tasks/PlayRadioFm.cpp] Requesting SoundManager()->RadioFmSetFrequency(98.50)"),
        QStringLiteral("9 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm/SetFrequency: 98.50"),
        QStringLiteral("4 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm(radiofm): 0 (stop)"),
        QStringLiteral("9 [tasks/EnableAux.cpp] Requesting SoundManager()->PlayAux()"),
        QStringLiteral("4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(1): 0"),
        QStringLiteral("9 [tasks/EnableAux.cpp] Requesting SoundManager()->StopPlay(aux)"),
        QStringLiteral("4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(0): 0 (stop)"),
        QStringLiteral("9 [tasks/StopMessage.cpp] TASK REQUESTED | StopPlay(file)")};
}

// What is logged when every request fails on the bus; %1 is the bus's message, of the peer's own kind in %2.
QStringList BusErrorLines()
{
    return {QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile request error: %sound%"),
            QStringLiteral("5 [tasks/PlayPlaylist.cpp] PlayPlaylist NOT delayed: will start from track 1"),
            QStringLiteral("4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist..."),
            QStringLiteral("1 [tasks/PlayPlaylist.cpp] PlayPlaylist request error: %sound%"),
            QStringLiteral("1 [tasks/Light.cpp] SetIntensity(50) request error"),
            QStringLiteral("1 [tasks/Amplifiers.cpp] SetAmplifiers(0x12c) request error: %sound%"),
            QStringLiteral("1 [tasks/Volume.cpp] SetVolume(-5) request error: %sound%"),
            QStringLiteral("9 [tasks/Camera.cpp] Enabling"),
            QStringLiteral("4 [tasks/Camera.cpp] EnableCamera(1) request error: %photo%"),
            QStringLiteral("1 [tasks/CpuFreq.cpp] SetFreq(456) request error: %freq%"),
            QStringLiteral("1 [tasks/Gps.cpp] SetEnabled(1) request error: %gps%"),
            QStringLiteral("1 [tasks/Lan.cpp] EnableLan(dhcp) request error: %network%"),
            QStringLiteral("1 [tasks/Lan.cpp] DisableLan request error: %network%"),
            QStringLiteral("9 [tasks/Photo.cpp] Taking single photo"),
            QStringLiteral("1 [tasks/Photo.cpp] TakePhoto() request error: %photo%"),
            QStringLiteral("9 [tasks/Photo.cpp] Taking multiple photo"),
            QStringLiteral("4 [tasks/Photo.cpp] TakePhotoStream(10) request error: %photo%"),
            QStringLiteral("1 [tasks/StopMessage.cpp] StopPlay(file) request error: %sound%"),
            QStringLiteral("1 [tasks/StopPlaylist.cpp] StopPlay(playlist) request error: %sound%"),
            QStringLiteral("1 [tasks/StopStream.cpp] StopPlay(stream) request error: %sound%"),
            QStringLiteral("1 [tasks/StopRadioFm.cpp] StopPlay(radiofm) request error: %sound%"),
            QStringLiteral("5 [tasks/PlayStream.cpp] PlayStream setup done: uri=rtsp://10.0.0.5:8554/live"),
            QStringLiteral("1 [tasks/PlayStream.cpp] PlayStream request error: %sound%"),
            QStringLiteral("9 [tasks/PlayRadioFm.cpp] Requesting SoundManager()->PlayRadioFm()"),
            QStringLiteral("4 [tasks/PlayRadioFm.cpp] PlayRadioFm() request error: %sound%"),
            // Judged by the status alone: a call that failed on the bus brings none.
            QStringLiteral("4 [tasks/PlayRadioFm.cpp] TASK REQUESTED | PlayRadioFm(radiofm): 0 (stop)"),
            QStringLiteral("9 [tasks/EnableAux.cpp] Requesting SoundManager()->PlayAux()"),
            QStringLiteral("4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(1): 0"),
            QStringLiteral("9 [tasks/EnableAux.cpp] Requesting SoundManager()->StopPlay(aux)"),
            QStringLiteral("4 [tasks/EnableAux.cpp] TASK REQUESTED | EnableAux(0): 0 (stop)"),
            QStringLiteral("1 [tasks/StopMessage.cpp] StopPlay(file) request error: %sound%")};
}

} // namespace

void EveryKindAndAnswer::IsRequestedWithItsSignature()
{
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(Device().Calls(), AcceptedCalls());
    COMPARE_LINES(TakeTaskLines(9), AcceptedLines());
    COMPARE_LINES(Client().WaitForSignals(1), {QStringLiteral("ExpectedPddAction(1,true)")});
}

void EveryKindAndAnswer::IsLoggedWhenRefused()
{
    for (const QByteArray& method : Methods())
        Device().AnswerStatus(method.constData(), 7);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(9),
                  {QStringLiteral("1 [tasks/PlayMessage.cpp] PlayFile error: 7"),
                   QStringLiteral("5 [tasks/PlayPlaylist.cpp] PlayPlaylist NOT delayed: will start from track 1"),
                   QStringLiteral("4 [tasks/PlayPlaylist.cpp] Requesting PlayPlaylist..."),
                   QStringLiteral("1 [tasks/PlayPlaylist.cpp] PlayPlaylist error: 7"),
                   QStringLiteral("1 [tasks/Light.cpp] SetIntensity(50) request error"),
                   QStringLiteral("4 [tasks/Amplifiers.cpp] SetIntensity(300) error: 7"),
                   QStringLiteral("1 [tasks/Volume.cpp] SetVolume(-5) error: 7"),
                   QStringLiteral("9 [tasks/Camera.cpp] Enabling"),
                   QStringLiteral("1 [tasks/Camera.cpp] EnableCamera error: 7"),
                   QStringLiteral("4 [tasks/CpuFreq.cpp] SetFreq(456) error: 7"),
                   QStringLiteral("1 [tasks/Gps.cpp] SetEnabled(1) error: 7"),
                   QStringLiteral("1 [tasks/Lan.cpp] EnableLan(1) error: 7"),
                   QStringLiteral("1 [tasks/Lan.cpp] EnableLan(0) error: 7"),
                   QStringLiteral("9 [tasks/Photo.cpp] Taking single photo"),
                   QStringLiteral("1 [tasks/Photo.cpp] TakePhoto error: 7"),
                   QStringLiteral("9 [tasks/Photo.cpp] Taking multiple photo"),
                   QStringLiteral("4 [tasks/Photo.cpp] TakePhotoStream(10) request error (7)"),
                   QStringLiteral("1 [tasks/StopMessage.cpp] StopPlay(file) error: 7"),
                   QStringLiteral("1 [tasks/StopPlaylist.cpp] StopPlay(playlist) error: 7"),
                   QStringLiteral("1 [tasks/StopStream.cpp] StopPlay(stream) error: 7"),
                   QStringLiteral("1 [tasks/StopRadioFm.cpp] StopPlay(radiofm) error: 7"),
                   QStringLiteral("5 [tasks/PlayStream.cpp] PlayStream setup done: uri=rtsp://10.0.0.5:8554/live"),
                   QStringLiteral("1 [tasks/PlayStream.cpp] PlayStream error: 7"),
                   QStringLiteral("9 [tasks/PlayRadioFm.cpp] Requesting SoundManager()->PlayRadioFm()"),
                   QStringLiteral("1 [tasks/PlayRadioFm.cpp] PlayRadioFm() error: 7"),
                   QStringLiteral("4 [tasks/PlayRadioFm.cpp] StopPlay('radiofm') error: 7"),
                   QStringLiteral("9 [tasks/EnableAux.cpp] Requesting SoundManager()->PlayAux()"),
                   QStringLiteral("4 [tasks/EnableAux.cpp] PlayAux() error: 7"),
                   QStringLiteral("9 [tasks/EnableAux.cpp] Requesting SoundManager()->StopPlay(aux)"),
                   QStringLiteral("4 [tasks/EnableAux.cpp] StopPlay('aux') error: 7"),
                   QStringLiteral("1 [tasks/StopMessage.cpp] StopPlay(file) error: 7")});
    // A light that takes no intensity is not switched, and a radio that is off is not tuned.
    QStringList calls = AcceptedCalls();
    calls.removeOne(QStringLiteral("light.Switch b true"));
    calls.removeOne(QStringLiteral("sound.RadioFmSetFrequency d 98.5"));
    COMPARE_LINES(Device().Calls(), calls);
}

// message: with the peer's name in the place of %1.
void EveryKindAndAnswer::CompareFailures(const QString& message)
{
    QStringList expected = BusErrorLines();
    for (const char* peer : {"sound", "photo", "freq", "gps", "network"})
    {
        const QString name = QString::fromLatin1(peer);
        expected.replaceInStrings(QStringLiteral("%%1%").arg(name),
                                  QString(message).replace(QStringLiteral("%1"), name));
    }
    COMPARE_LINES(TakeTaskLines(9), expected);
}

void EveryKindAndAnswer::IsLoggedWhenItFailsOnTheBus()
{
    for (const QByteArray& method : Methods())
        Device().AnswerError(method.constData(), "out of order");
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    CompareFailures(QStringLiteral("out of order"));
}

void EveryKindAndAnswer::IsLoggedWhenThePeersAreAbsent()
{
    for (const char* peer : {"sound", "photo", "freq", "gps", "network", "light"})
        Device().SetPresent(peer, false);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    CompareFailures(QStringLiteral("The name com.kestrelix.ozna.%1manager was not provided by any .service files"));
    COMPARE_LINES(Device().Calls(), QStringList());
}

void EveryKindAndAnswer::CountsAsAcceptedWhenTheAnswerIsNoNumber_data()
{
    QTest::addColumn<QVariantList>("values");
    QTest::newRow("a text") << QVariantList{QStringLiteral("fine")};
    QTest::newRow("nothing") << QVariantList();
    QTest::newRow("a list of numbers") << QVariantList{QVariant::fromValue(QList<int>{7, 8})};
    QTest::newRow("an empty map") << QVariantList{QVariantMap()};
    QTest::newRow("0 and more than was asked for") << QVariantList{0, 7, QStringLiteral("more")};
}

void EveryKindAndAnswer::CountsAsAcceptedWhenTheAnswerIsNoNumber()
{
    QFETCH(QVariantList, values);
    for (const QByteArray& method : Methods())
        Device().AnswerValues(method.constData(), values);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(9), AcceptedLines());
    COMPARE_LINES(Device().Calls(), AcceptedCalls());
}

void EveryKindAndAnswer::RadioThatCannotBeTunedIsOn()
{
    Device().AnswerStatus("sound.RadioFmSetFrequency", 3);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(1), {QStringLiteral("1 [tasks/PlayRadioFm.cpp] RadioFmSetFrequency(98.50) error: 3")});
    COMPARE_LINES(Device().Calls(), AcceptedCalls());
}

void EveryKindAndAnswer::LightThatCannotBeSwitchedIsLogged()
{
    Device().AnswerStatus("light.Switch", 3);
    QVERIFY(StartSchedule());
    QVERIFY(WaitForTheLast());
    COMPARE_LINES(TakeTaskLines(1), {QStringLiteral("1 [tasks/Light.cpp] Switch(1) request error")});
    COMPARE_LINES(Device().Calls(), AcceptedCalls());
}

OZNA_CASE(EveryKind, EveryKindAndAnswer)
#include "tst_EveryKind.moc"
