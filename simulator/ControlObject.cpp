#include "ControlObject.h"

#include "Simulator.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QRegularExpression>

#include <SimulatorAdaptor.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace
{

constexpr const char* OBJECT_PATH = "/com/kestrelix/ozna/simulator/controlobj";
constexpr int EXIT_NORMAL = 0;
constexpr int ACCEPTED = 0;

struct KindName
{
    const char* name;
    AnswerKind kind;
};

constexpr std::array KINDS{
    KindName{"reply", ANSWER_REPLY},   KindName{"error", ANSWER_ERROR}, KindName{"silence", ANSWER_SILENCE},
    KindName{"exit", ANSWER_EXIT},     KindName{"late", ANSWER_LATE},   KindName{"leave", ANSWER_LEAVE},
    KindName{"broken", ANSWER_BROKEN}, KindName{"die", ANSWER_DIE},
};

// A name such as "com.example.Failed", and a message; the bus library sends no other name.
bool IsError(const QVariantList& values)
{
    static const QRegularExpression NAME(QStringLiteral("^[A-Za-z_]\\w*(\\.[A-Za-z_]\\w*)+$"));
    const auto isString = [](const QVariant& value) { return value.metaType() == QMetaType::fromType<QString>(); };
    return values.size() == 2 && std::ranges::all_of(values, isString) && NAME.match(values[0].toString()).hasMatch();
}

} // namespace

ControlObject::ControlObject(Simulator& simulator)
    : m_simulator(simulator)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    new SimulatorAdaptor(this);
}

ControlObject::~ControlObject() = default;

void ControlObject::Register(QDBusConnection bus, const QString& service)
{
    if (!bus.registerObject(QString::fromLatin1(OBJECT_PATH), this, QDBusConnection::ExportAdaptors))
        throw std::runtime_error(std::string("can't register object ") + OBJECT_PATH);
    if (!bus.registerService(service))
        throw std::runtime_error("can't register service " + service.toStdString() + ", or it has an owner already");
}

void ControlObject::SetAnswer(const QString& interface, const QString& method, const QString& kind,
                              const QVariantList& values, int delay_ms, int times)
{
    const SimulatedPeer* const peer = RequirePeer(interface);
    if (peer == nullptr || !Require(peer->Description().FindMethod(method) != nullptr,
                                    QStringLiteral("%1 has no method %2").arg(interface, method)))
        return;
    const auto* const named =
        std::ranges::find_if(KINDS, [&kind](const KindName& row) { return kind == QLatin1String(row.name); });
    if (!Require(named != KINDS.end(), QStringLiteral("no kind of answer: %1").arg(kind)) ||
        !Require(delay_ms >= 0 && times >= 0, QStringLiteral("delay and times are not negative")) ||
        !Require(named->kind != ANSWER_ERROR || IsError(values),
                 QStringLiteral("an error has two strings, a bus name and a message")))
        return;
    m_simulator.Script().Add(interface, method, {named->kind, values, delay_ms}, times);
}

void ControlObject::SetSignal(const QString& interface, const QString& method, const QString& signal,
                              const QVariantList& values, bool isFirst, int gap_ms, int times)
{
    const SimulatedPeer* const peer = RequirePeer(interface);
    if (peer == nullptr ||
        !Require(peer->Description().FindMethod(method) != nullptr,
                 QStringLiteral("%1 has no method %2").arg(interface, method)) ||
        !Require(peer->Description().HasSignal(signal), QStringLiteral("%1 has no signal %2").arg(interface, signal)) ||
        !Require(gap_ms >= 0 && times >= 0, QStringLiteral("gap and times are not negative")))
        return;
    const SignalBeside beside{signal, values, isFirst, gap_ms};
    m_simulator.Script().Add(interface, method, {ANSWER_REPLY, {ACCEPTED}, 0, beside}, times);
}

void ControlObject::ClearAnswers()
{
    m_simulator.Script().Clear();
}

void ControlObject::SetPresent(const QString& interface, bool present)
{
    SimulatedPeer* const peer = RequirePeer(interface);
    if (peer != nullptr)
        Try([=] { peer->SetPresent(present); });
}

void ControlObject::StandBy(const QString& interface)
{
    SimulatedPeer* const peer = RequirePeer(interface);
    if (peer != nullptr)
        Try([=] { peer->StandBy(); });
}

void ControlObject::EmitSignal(const QString& interface, const QString& signal, const QVariantList& values, int times)
{
    SimulatedPeer* const peer = RequirePeer(interface);
    if (peer == nullptr ||
        !Require(peer->Description().HasSignal(signal), QStringLiteral("%1 has no signal %2").arg(interface, signal)) ||
        !Require(times >= 0, QStringLiteral("times is not negative")))
        return;
    for (int i = 0; i < times; ++i)
    {
        if (peer->SendSignal(signal, values))
            continue;
        sendErrorReply(QDBusError::Failed, QStringLiteral("signal %1 of %2 not sent").arg(i + 1).arg(times));
        return;
    }
}

QList<QVariantMap> ControlObject::Calls() const
{
    return m_simulator.Log().ToMaps();
}

void ControlObject::ForgetCalls()
{
    m_simulator.Log().Clear();
}

void ControlObject::Quit()
{
    QCoreApplication::exit(EXIT_NORMAL);
}

SimulatedPeer* ControlObject::RequirePeer(const QString& interface)
{
    SimulatedPeer* const peer = m_simulator.FindPeer(interface);
    Require(peer != nullptr, QStringLiteral("no peer with interface ") + interface);
    return peer;
}

void ControlObject::Try(const std::function<void()>& change)
{
    try
    {
        change();
    }
    catch (const std::exception& error)
    {
        sendErrorReply(QDBusError::Failed, QString::fromLocal8Bit(error.what()));
    }
}

bool ControlObject::Require(bool condition, const QString& complaint)
{
    if (!condition)
        sendErrorReply(QDBusError::InvalidArgs, complaint);
    return condition;
}
