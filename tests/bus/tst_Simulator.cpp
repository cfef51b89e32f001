#include "SimulatorTest.h"
#include "Suite.h"

#include <QDBusConnectionInterface>

#include <csignal>

using namespace Qt::StringLiterals;

// The simulated device as a process: who is there, what it answers unasked, how it ends.
class Simulator : public SimulatorTest
{
    Q_OBJECT

private Q_SLOTS:
    void AllPeersAreThereWithTheControlName();
    void AnAbsentPeerHasNoNameUntilItIsPresent();
    void AnswersStatusZeroAndNeutralValues_data();
    void AnswersStatusZeroAndNeutralValues();
    void RefusesWhatTheInterfaceDoesNotHave_data();
    void RefusesWhatTheInterfaceDoesNotHave();
    void ASecondOneOnTheBusFails();
    void EndsOnItsOwnWhenTheBusDoes();
    void EndsCleanlyOnASignal();
};

void Simulator::AllPeersAreThereWithTheControlName()
{
    Start();
    for (const PeerName& peer : PEER_NAMES)
    {
        const QString name = QString::fromLatin1(peer.name);
        QVERIFY2(Bus().Connection().interface()->isServiceRegistered(Service(name)), peer.name);
        const QDBusMessage reply = Bus().Connection().call(QDBusMessage::createMethodCall(
            Service(name), ObjectPath(name), u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s));
        QVERIFY2(reply.arguments().value(0).toString().contains(Interface(name)), peer.name);
    }
}

void Simulator::AnAbsentPeerHasNoNameUntilItIsPresent()
{
    Start({u"--quiet"_s, u"--absent"_s, SOUND_INTERFACE});
    QCOMPARE(Call("sound", PLAY_AUX).errorName(), u"org.freedesktop.DBus.Error.ServiceUnknown"_s);
    Order("SetPresent", {SOUND_INTERFACE, true});
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
    Order("SetPresent", {SOUND_INTERFACE, false});
    QVERIFY(Bus().WaitForService(Service(u"sound"_s), false));
}

void Simulator::AnswersStatusZeroAndNeutralValues_data()
{
    QTest::addColumn<QByteArray>("peer");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QVariantList>("values");
    const auto row = [](const char* peer, const char* method, const QVariantList& arguments, const char* signature,
                        const QVariantList& values) {
        QTest::newRow(method) << QByteArray(peer) << QString::fromLatin1(method) << arguments
                              << QString::fromLatin1(signature) << values;
    };
    row("sound", "SetAmplifiers", {QVariant::fromValue(uchar(5))}, "i", {0});
    row("config", "GetStringValue", {QString(), QString()}, "is", {0, QString()});
    row("light", "GetSwitch", {}, "ib", {0, false});
    row("light", "GetIntensity", {}, "iu", {0, 0U});
    row("freq", "GetFreq", {}, "ii", {0, 0});
    row("gps", "GetFix", {}, "ibiiiddd", {0, false, 0, 0, 0, 0.0, 0.0, 0.0});
}

void Simulator::AnswersStatusZeroAndNeutralValues()
{
    QFETCH(QByteArray, peer);
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, signature);
    QFETCH(QVariantList, values);
    Start();
    const QDBusMessage reply = Call(peer.constData(), method, arguments);
    QCOMPARE(reply.signature(), signature);
    QCOMPARE(reply.arguments(), values);
}

void Simulator::RefusesWhatTheInterfaceDoesNotHave_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("unknown method") << u"PlayDrum"_s << QVariantList();
    QTest::newRow("an argument too few") << PLAY_FILE << QVariantList{QString()};
    QTest::newRow("an argument too many") << PLAY_AUX << QVariantList{0};
    QTest::newRow("another type") << u"SetMasterVolume"_s << QVariantList{50};
}

void Simulator::RefusesWhatTheInterfaceDoesNotHave()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    Start();
    QCOMPARE(Call("sound", method, arguments).errorName(), u"org.freedesktop.DBus.Error.UnknownMethod"_s);
    QCOMPARE(Control("Calls").arguments().size(), 1);
    QVERIFY(Calls().isEmpty());
}

void Simulator::ASecondOneOnTheBusFails()
{
    Start();
    const std::unique_ptr<QProcess> second = Launch({});
    QCOMPARE(ExitCode(*second), EXIT_FAILURE);
    QVERIFY(second->readAllStandardError().contains("has an owner already"));
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
}

void Simulator::EndsOnItsOwnWhenTheBusDoes()
{
    Start();
    Bus().Kill();
    QCOMPARE(ExitCode(Process()), EXIT_FAILURE);
}

void Simulator::EndsCleanlyOnASignal()
{
    for (const int signal : {SIGTERM, SIGINT})
    {
        Start();
        QCOMPARE(::kill(static_cast<pid_t>(Process().processId()), signal), 0);
        QCOMPARE(ExitCode(Process()), EXIT_SUCCESS);
        QVERIFY(Bus().WaitForService(CONTROL_SERVICE, false));
    }
}

OZNA_CASE(Simulator, Simulator)
#include "tst_Simulator.moc"
