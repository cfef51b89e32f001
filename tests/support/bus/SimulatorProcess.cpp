#include "SimulatorProcess.h"

#include "BuiltProgram.h"
#include "PeerNames.h"
#include "Wait.h"

#include <QDBusArgument>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace
{

const QString PATH = u"/com/kestrelix/ozna/simulator/controlobj"_s;
const QString CONTROL_INTERFACE = u"com.kestrelix.ozna.simulatorinterface"_s;

QString InterfaceName(const QByteArray& peer)
{
    return u"com.kestrelix.ozna.%1interface"_s.arg(QString::fromLatin1(peer));
}

QString PeerName(const QString& interface)
{
    return interface.section(u'.', -1).chopped(static_cast<qsizetype>(strlen("interface")));
}

QByteArray PeerOf(const char* member)
{
    return QByteArray(member).split('.').at(0);
}

QString NameOf(const char* member)
{
    return QString::fromLatin1(QByteArray(member).split('.').at(1));
}

QString ShownValue(const QVariant& value)
{
    // A byte is a number here, not a character.
    return value.metaType() == QMetaType::fromType<uchar>() ? QString::number(value.toUInt()) : value.toString();
}

QString ShownCall(const QVariantMap& call)
{
    const QString signature = call.value(u"signature"_s).toString();
    QString shown = u"%1.%2 %3"_s.arg(PeerName(call.value(u"interface"_s).toString()),
                                      call.value(u"method"_s).toString(), signature.isEmpty() ? u"-"_s : signature);
    for (const QVariant& value : qdbus_cast<QVariantList>(call.value(u"arguments"_s)))
        shown += u' ' + ShownValue(value);
    return shown;
}

} // namespace

SimulatorProcess::SimulatorProcess(const PrivateBus& bus, QString control)
    : m_bus(bus)
    , m_control(std::move(control))
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

SimulatorProcess::~SimulatorProcess()
{
    m_process.kill();
    m_process.waitForFinished();
}

void SimulatorProcess::Start(const QStringList& arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus.Address());
    m_process.setProcessEnvironment(environment);
    BuiltProgram::Set(m_process, u"ozna-simulator"_s, arguments + QStringList{u"--control"_s, m_control});
    m_process.start();
    if (!m_bus.WaitForService(m_control))
        qFatal("the simulator does not come up: %s", qPrintable(m_process.errorString()));
}

QDBusMessage SimulatorProcess::ControlCall(const char* method, const QVariantList& arguments) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(m_control, PATH, CONTROL_INTERFACE, QString::fromLatin1(method));
    call.setArguments(arguments);
    return call;
}

QVariantList SimulatorProcess::Control(const char* method, const QVariantList& arguments) const
{
    const QDBusMessage reply = m_bus.Connection().call(ControlCall(method, arguments));
    if (reply.type() != QDBusMessage::ReplyMessage)
        qFatal("the simulator refuses %s: %s", method, qPrintable(reply.errorMessage()));
    return reply.arguments();
}

void SimulatorProcess::SetAnswer(const char* method, const char* kind, const QVariantList& values, int delay_ms,
                                 int times) const
{
    Control("SetAnswer", {InterfaceName(PeerOf(method)), NameOf(method), QString::fromLatin1(kind),
                          QVariant::fromValue(values), delay_ms, times});
}

void SimulatorProcess::StartWithoutPeers()
{
    QStringList arguments{u"--quiet"_s};
    for (const auto& [peer, object] : PEER_NAMES)
        arguments += {u"--absent"_s, u"com.kestrelix.ozna.%1interface"_s.arg(QLatin1String(peer))};
    Start(arguments);
}

void SimulatorProcess::AnswerStatus(const char* method, int status, int delay_ms, int times) const
{
    SetAnswer(method, "reply", {status}, delay_ms, times);
}

void SimulatorProcess::AnswerValues(const char* method, const QVariantList& values, int delay_ms, int times) const
{
    SetAnswer(method, "reply", values, delay_ms, times);
}

void SimulatorProcess::AnswerError(const char* method, const char* message, int times) const
{
    SetAnswer(method, "error", {u"com.kestrelix.ozna.Error.Failed"_s, QString::fromUtf8(message)}, 0, times);
}

void SimulatorProcess::AnswerNever(const char* method, int times) const
{
    SetAnswer(method, "silence", {}, 0, times);
}

void SimulatorProcess::AnswerByExit(const char* method) const
{
    SetAnswer(method, "exit", {}, 0, 1);
}

void SimulatorProcess::AnswerLate(const char* method, int status) const
{
    SetAnswer(method, "late", {status}, 0, 1);
}

void SimulatorProcess::AnswerAndLeave(const char* method, int status) const
{
    SetAnswer(method, "leave", {status}, 0, 1);
}

void SimulatorProcess::AnswerBroken(const char* method) const
{
    SetAnswer(method, "broken", {}, 0, 1);
}

void SimulatorProcess::AnswerAndDie(const char* method, int status) const
{
    SetAnswer(method, "die", {status}, 0, 1);
}

void SimulatorProcess::SetSignal(const char* method, const char* signal, const QVariantList& values, bool isFirst,
                                 int gap_ms, int times) const
{
    Control("SetSignal", {InterfaceName(PeerOf(method)), NameOf(method), NameOf(signal), QVariant::fromValue(values),
                          isFirst, gap_ms, times});
}

void SimulatorProcess::AnswerThenEmit(const char* method, const char* signal, const QVariantList& values, int gap_ms,
                                      int times) const
{
    SetSignal(method, signal, values, false, gap_ms, times);
}

void SimulatorProcess::EmitThenAnswer(const char* method, const char* signal, const QVariantList& values, int gap_ms,
                                      int times) const
{
    SetSignal(method, signal, values, true, gap_ms, times);
}

void SimulatorProcess::ClearAnswers() const
{
    Control("ClearAnswers");
}

void SimulatorProcess::SetPresent(const char* peer, bool present) const
{
    Control("SetPresent", {InterfaceName(peer), present});
}

void SimulatorProcess::StandBy(const char* peer) const
{
    Control("StandBy", {InterfaceName(peer)});
}

void SimulatorProcess::Emit(const char* signal, const QVariantList& values, int times) const
{
    Control("EmitSignal", {InterfaceName(PeerOf(signal)), NameOf(signal), QVariant::fromValue(values), times});
}

QDBusPendingCall SimulatorProcess::EmitMeanwhile(const char* signal, const QVariantList& values, int times) const
{
    return m_bus.Connection().asyncCall(
        ControlCall("EmitSignal", {InterfaceName(PeerOf(signal)), NameOf(signal), QVariant::fromValue(values), times}));
}

QList<QVariantMap> SimulatorProcess::CallRecords() const
{
    return qdbus_cast<QList<QVariantMap>>(Control("Calls").value(0));
}

QStringList SimulatorProcess::Calls() const
{
    QStringList calls;
    for (const QVariantMap& call : CallRecords())
        calls.append(ShownCall(call));
    return calls;
}

QList<qint64> SimulatorProcess::CallTimes() const
{
    QList<qint64> times;
    for (const QVariantMap& call : CallRecords())
        times.append(call.value(u"time_ms"_s).toLongLong());
    return times;
}

void SimulatorProcess::Forget() const
{
    Control("ForgetCalls");
}

bool SimulatorProcess::WaitForCalls(qsizetype count) const
{
    return WaitUntil([&] { return CallRecords().size() >= count; });
}
