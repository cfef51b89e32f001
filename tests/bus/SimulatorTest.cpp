#include "SimulatorTest.h"

#include "BuiltProgram.h"

#include <QDBusArgument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString PREFIX = u"com.kestrelix.ozna."_s;
}

const QString SimulatorTest::CONTROL_SERVICE = PREFIX + u"simulator"_s;
const QString SimulatorTest::SOUND_INTERFACE = PREFIX + u"soundinterface"_s;
const QString SimulatorTest::PLAY_AUX = u"PlayAux"_s;
const QString SimulatorTest::PLAY_FILE = u"PlayFile"_s;

QString SimulatorTest::Service(const QString& peer)
{
    return PREFIX + peer + u"manager"_s;
}

QString SimulatorTest::Interface(const QString& peer)
{
    return PREFIX + peer + u"interface"_s;
}

QString SimulatorTest::ObjectPath(const QString& peer)
{
    const auto* const row =
        std::ranges::find_if(PEER_NAMES, [&peer](const PeerName& known) { return peer == QLatin1String(known.name); });
    return u"/com/kestrelix/ozna/%1manager/%2"_s.arg(peer, QLatin1String(row->object));
}

void SimulatorTest::Order(const char* method, const QVariantList& arguments)
{
    const QDBusMessage reply = Control(method, arguments);
    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
}

void SimulatorTest::SetAnswer(const char* kind, const QVariantList& values, int delay_ms, int times)
{
    Order("SetAnswer", {SOUND_INTERFACE, PLAY_AUX, QString::fromLatin1(kind), QVariant(values), delay_ms, times});
}

QList<QVariantMap> SimulatorTest::Calls()
{
    return qdbus_cast<QList<QVariantMap>>(Control("Calls").arguments().value(0));
}

void SimulatorTest::init()
{
    m_bus = std::make_unique<PrivateBus>();
}

void SimulatorTest::cleanup()
{
    if (m_process)
    {
        m_process->kill();
        m_process->waitForFinished();
    }
    m_process.reset();
    m_bus.reset();
}

std::unique_ptr<QProcess> SimulatorTest::Launch(const QStringList& arguments) const
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus->Address());
    process->setProcessEnvironment(environment);
    BuiltProgram::Set(*process, u"ozna-simulator"_s, arguments);
    process->start();
    return process;
}

void SimulatorTest::Start(const QStringList& arguments)
{
    m_process = Launch(arguments);
    QVERIFY(m_bus->WaitForService(CONTROL_SERVICE));
}

int SimulatorTest::ExitCode(QProcess& process)
{
    const bool ended = process.state() == QProcess::NotRunning || process.waitForFinished(WAIT_MS);
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QDBusMessage SimulatorTest::Call(const char* peer, const QString& member, const QVariantList& arguments, int timeout_ms)
{
    const QString name = QString::fromLatin1(peer);
    QDBusMessage call = QDBusMessage::createMethodCall(Service(name), ObjectPath(name), Interface(name), member);
    call.setArguments(arguments);
    return m_bus->Connection().call(call, QDBus::Block, timeout_ms);
}

QDBusMessage SimulatorTest::Control(const char* method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(CONTROL_SERVICE, u"/com/kestrelix/ozna/simulator/controlobj"_s,
                                                       PREFIX + u"simulatorinterface"_s, QString::fromLatin1(method));
    call.setArguments(arguments);
    return m_bus->Connection().call(call);
}
