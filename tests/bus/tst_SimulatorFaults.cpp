#include "SimulatorTest.h"
#include "Suite.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCall>

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

    void SetAnswer(const char* kind, const QVariantList& values = {});
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

const QString SimulatorFaults::SECOND = QStringLiteral("com.kestrelix.ozna.simulator2");

void SimulatorFaults::SetAnswer(const char* kind, const QVariantList& values)
{
    const QDBusMessage reply =
        Control("SetAnswer", {SOUND_INTERFACE, PLAY_AUX, QString::fromLatin1(kind), QVariant(values), 0, 1});
    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
}

QDBusPendingCall SimulatorFaults::CallLater()
{
    const QString sound = QStringLiteral("sound");
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
    QStringList arguments{QStringLiteral("--quiet"), QStringLiteral("--control"), SECOND};
    for (const Peer& peer : PEERS)
        arguments += {QStringLiteral("--absent"), Interface(QString::fromLatin1(peer.name))};
    m_second = Launch(arguments);
    QVERIFY(Bus().WaitForService(SECOND));
}

QDBusMessage SimulatorFaults::ControlSecond(const char* method, const QVariantList& arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(SECOND, QStringLiteral("/com/kestrelix/ozna/simulator/controlobj"),
                                       Interface(QStringLiteral("simulator")), QString::fromLatin1(method));
    call.setArguments(arguments);
    return Bus().Connection().call(call);
}

QString SimulatorFaults::SoundOwner()
{
    return Bus().Connection().interface()->serviceOwner(Service(QStringLiteral("sound"))).value();
}

void SimulatorFaults::Listen()
{
    m_senders.clear();
    QVERIFY(Bus().Connection().connect(QString(), ObjectPath(QStringLiteral("sound")), SOUND_INTERFACE,
                                       QStringLiteral("PlayFileCompleted"), this, SLOT(OnSignal(QDBusMessage))));
}

void SimulatorFaults::AnAnswerCanHaveNoValuesOrTooMany()
{
    Start();
    SetAnswer("reply", {});
    SetAnswer("reply", {0, 7, QStringLiteral("more")});
    QCOMPARE(Call("sound", PLAY_AUX).signature(), QString());
    QCOMPARE(Call("sound", PLAY_AUX).signature(), QStringLiteral("iis"));
}

void SimulatorFaults::ALateAnswerComesInTheMiddleOfTheNextCall()
{
    Start();
    SetAnswer("late", {7});
    QDBusPendingCall first = CallLater();
    // Another peer's call goes to the same process: when it is answered, the first one has been held back.
    QCOMPARE(Call("light", QStringLiteral("GetSwitch")).type(), QDBusMessage::ReplyMessage);
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
    QCOMPARE(Call("sound", PLAY_AUX).errorName(), QStringLiteral("org.freedesktop.DBus.Error.NoReply"));
    QVERIFY(!Bus().Connection().interface()->isServiceRegistered(CONTROL_SERVICE));
    QCOMPARE(ExitCode(Process()), EXIT_FAILURE);
    QCOMPARE(Process().readAllStandardError(), QByteArray("ozna-simulator: the bus is gone\n"));
}

void SimulatorFaults::APeerThatLeavesStillAnswers()
{
    Start();
    SetAnswer("leave", {3});
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{3});
    QCOMPARE(Call("sound", PLAY_AUX).errorName(), QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown"));
    QCOMPARE(Call("light", QStringLiteral("GetSwitch")).type(), QDBusMessage::ReplyMessage);
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
    QCOMPARE(qdbus_cast<QList<QVariantMap>>(Control("Calls").arguments().value(0)).size(), 1);
    QCOMPARE(qdbus_cast<QList<QVariantMap>>(ControlSecond("Calls", {}).arguments().value(0)).size(), 1);
    // And back.
    QCOMPARE(ControlSecond("SetPresent", {SOUND_INTERFACE, false}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(Control("SetPresent", {SOUND_INTERFACE, true}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(SoundOwner(), first);
}

void SimulatorFaults::WhoStandsByCanStepOutOfTheLine()
{
    Start();
    StartSecond();
    QCOMPARE(ControlSecond("StandBy", {SOUND_INTERFACE}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(ControlSecond("SetPresent", {SOUND_INTERFACE, false}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(Control("SetPresent", {SOUND_INTERFACE, false}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(SoundOwner(), QString());
}

void SimulatorFaults::AStrangerSendsItsSignalsUnderItsOwnName()
{
    Start();
    StartSecond();
    Listen();
    const QVariantList signal{SOUND_INTERFACE, QStringLiteral("PlayFileCompleted"),
                              QVariant(QVariantList{QStringLiteral("gong.mp3")}), 1};
    QCOMPARE(ControlSecond("EmitSignal", signal).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(Control("EmitSignal", signal).type(), QDBusMessage::ReplyMessage);
    QVERIFY(WaitUntil([this] { return m_senders.size() == 2; }));
    QVERIFY(m_senders[0] != SoundOwner());
    QCOMPARE(m_senders[1], SoundOwner());
}

void SimulatorFaults::AFloodArrivesWhole()
{
    constexpr int COUNT = 10000;
    Start();
    Listen();
    QCOMPARE(Control("EmitSignal", {SOUND_INTERFACE, QStringLiteral("PlayFileCompleted"),
                                    QVariant(QVariantList{QStringLiteral("gong.mp3")}), COUNT})
                 .type(),
             QDBusMessage::ReplyMessage);
    QVERIFY(WaitUntil([this] { return m_senders.size() == COUNT; }));
}

void SimulatorFaults::ASlipIsAnError()
{
    Start();
    QCOMPARE(Control("StandBy", {QStringLiteral("com.example")}).errorName(),
             QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
}

OZNA_CASE(SimulatorFaults, SimulatorFaults)
#include "tst_SimulatorFaults.moc"
