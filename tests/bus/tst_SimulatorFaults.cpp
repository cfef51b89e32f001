#include "SimulatorTest.h"
#include "Suite.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCall>

using namespace Qt::StringLiterals;

// What a simulated peer can do wrong, and a second simulator beside it: its successor, or a stranger.
class SimulatorFaults : public SimulatorTest
{
    Q_OBJECT

private Q_SLOTS:
    void AnAnswerCanHaveNoValuesOrTooMany();
    void ALateAnswerComesInTheMiddleOfTheNextCall();
    void ABrokenAnswerCostsTheConnection();
    void APeerThatLeavesStillAnswers();
    void ANamePassesToTheOneThatStandsBy();
    void WhoStandsByCanStepOutOfTheLine();
    void AStrangerSendsItsSignalsUnderItsOwnName();
    void AFloodArrivesWhole();
    void ASlipIsAnError();
    void cleanupTestCase() { EndSecond(); }

public Q_SLOTS:
    void OnSignal(const QDBusMessage& message) { m_senders.append(message.service()); }

private:
    static const QString SECOND;

    QDBusPendingCall CallLater();
    // Starts a second simulator that owns no peer's name.
    void StartSecond();
    void EndSecond();
    QDBusMessage ControlSecond(const char* method, const QVariantList& arguments);
    [[nodiscard]] QString SoundOwner();
    void Listen();

    std::unique_ptr<QProcess> m_second;
    QStringList m_senders;
};

const QString SimulatorFaults::SECOND = u"com.kestrelix.ozna.simulator2"_s;

QDBusPendingCall SimulatorFaults::CallLater()
{
    const QString sound = u"sound"_s;
    return Bus().Connection().asyncCall(
        QDBusMessage::createMethodCall(Service(sound), ObjectPath(sound), SOUND_INTERFACE, PLAY_AUX), WAIT_MS);
}

void SimulatorFaults::EndSecond()
{
    if (!m_second)
        return;
    m_second->kill();
    m_second->waitForFinished();
    m_second.reset();
}

void SimulatorFaults::StartSecond()
{
    EndSecond();
    QStringList arguments{u"--quiet"_s, u"--control"_s, SECOND};
    for (const PeerName& peer : PEER_NAMES)
        arguments += {u"--absent"_s, Interface(QString::fromLatin1(peer.name))};
    m_second = Launch(arguments);
    QVERIFY(Bus().WaitForService(SECOND));
}

QDBusMessage SimulatorFaults::ControlSecond(const char* method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(SECOND, u"/com/kestrelix/ozna/simulator/controlobj"_s,
                                                       Interface(u"simulator"_s), QString::fromLatin1(method));
    call.setArguments(arguments);
    return Bus().Connection().call(call);
}

QString SimulatorFaults::SoundOwner()
{
    return Bus().Connection().interface()->serviceOwner(Service(u"sound"_s)).value();
}

void SimulatorFaults::Listen()
{
    m_senders.clear();
    QVERIFY(Bus().Connection().connect(QString(), ObjectPath(u"sound"_s), SOUND_INTERFACE, u"PlayFileCompleted"_s, this,
                                       SLOT(OnSignal(QDBusMessage))));
}

void SimulatorFaults::AnAnswerCanHaveNoValuesOrTooMany()
{
    Start();
    SetAnswer("reply", {});
    SetAnswer("reply", {0, 7, u"more"_s});
    QCOMPARE(Call("sound", PLAY_AUX).signature(), QString());
    QCOMPARE(Call("sound", PLAY_AUX).signature(), u"iis"_s);
}

void SimulatorFaults::ALateAnswerComesInTheMiddleOfTheNextCall()
{
    Start();
    SetAnswer("late", {7});
    QDBusPendingCall first = CallLater();
    // Another peer's call goes to the same process: when it is answered, the first one has been held back.
    QCOMPARE(Call("light", u"GetSwitch"_s).type(), QDBusMessage::ReplyMessage);
    QVERIFY(!first.isFinished());
    QDBusPendingCall second = CallLater();
    first.waitForFinished();
    second.waitForFinished();
    QCOMPARE(first.reply().arguments(), QVariantList{7});
    QCOMPARE(second.reply().arguments(), QVariantList{0});
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
}

void SimulatorFaults::ABrokenAnswerCostsTheConnection()
{
    Start();
    SetAnswer("broken");
    QCOMPARE(Call("sound", PLAY_AUX).errorName(), u"org.freedesktop.DBus.Error.NoReply"_s);
    QVERIFY(!Bus().Connection().interface()->isServiceRegistered(CONTROL_SERVICE));
    QCOMPARE(ExitCode(Process()), EXIT_FAILURE);
    QCOMPARE(Process().readAllStandardError(), QByteArray("ozna-simulator: the bus is gone\n"));
}

void SimulatorFaults::APeerThatLeavesStillAnswers()
{
    Start();
    SetAnswer("leave", {3});
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{3});
    QCOMPARE(Call("sound", PLAY_AUX).errorName(), u"org.freedesktop.DBus.Error.ServiceUnknown"_s);
    QCOMPARE(Call("light", u"GetSwitch"_s).type(), QDBusMessage::ReplyMessage);
}

void SimulatorFaults::ANamePassesToTheOneThatStandsBy()
{
    Start();
    StartSecond();
    const QString first = SoundOwner();
    QCOMPARE(ControlSecond("StandBy", {SOUND_INTERFACE}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(SoundOwner(), first);
    SetAnswer("leave", {0});
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
    QVERIFY(!SoundOwner().isEmpty());
    QVERIFY(SoundOwner() != first);
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
    QCOMPARE(Calls().size(), 1);
    QCOMPARE(qdbus_cast<QList<QVariantMap>>(ControlSecond("Calls", {}).arguments().value(0)).size(), 1);
    // And back.
    QCOMPARE(ControlSecond("SetPresent", {SOUND_INTERFACE, false}).type(), QDBusMessage::ReplyMessage);
    Order("SetPresent", {SOUND_INTERFACE, true});
    QCOMPARE(SoundOwner(), first);
}

void SimulatorFaults::WhoStandsByCanStepOutOfTheLine()
{
    Start();
    StartSecond();
    QCOMPARE(ControlSecond("StandBy", {SOUND_INTERFACE}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(ControlSecond("SetPresent", {SOUND_INTERFACE, false}).type(), QDBusMessage::ReplyMessage);
    Order("SetPresent", {SOUND_INTERFACE, false});
    QCOMPARE(SoundOwner(), QString());
}

void SimulatorFaults::AStrangerSendsItsSignalsUnderItsOwnName()
{
    Start();
    StartSecond();
    Listen();
    const QVariantList signal{SOUND_INTERFACE, u"PlayFileCompleted"_s, QVariant(QVariantList{u"gong.mp3"_s}), 1};
    QCOMPARE(ControlSecond("EmitSignal", signal).type(), QDBusMessage::ReplyMessage);
    Order("EmitSignal", signal);
    QVERIFY(WaitUntil([this] { return m_senders.size() == 2; }));
    QVERIFY(m_senders[0] != SoundOwner());
    QCOMPARE(m_senders[1], SoundOwner());
}

void SimulatorFaults::AFloodArrivesWhole()
{
    constexpr int COUNT = 10000;
    Start();
    Listen();
    Order("EmitSignal", {SOUND_INTERFACE, u"PlayFileCompleted"_s, QVariant(QVariantList{u"gong.mp3"_s}), COUNT});
    QVERIFY(WaitUntil([this] { return m_senders.size() == COUNT; }));
}

void SimulatorFaults::ASlipIsAnError()
{
    Start();
    QCOMPARE(Control("StandBy", {u"com.example"_s}).errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
}

OZNA_CASE(SimulatorFaults, SimulatorFaults)
#include "tst_SimulatorFaults.moc"
