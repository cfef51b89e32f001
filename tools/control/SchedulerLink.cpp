#include "SchedulerLink.h"

#include "SchedulerNames.h"
#include "base/ToolError.h"

#include <SchedulerProxy.h>

#include <QDBusConnectionInterface>

namespace
{

// A load waits for what still plays to be stopped, and each peer may be slow.
constexpr int LOAD_TIMEOUT_MS = 120000;

// What needs no peer waits for what is under way.
constexpr int STATE_TIMEOUT_MS = 30000;

const QString START_IT = QStringLiteral("\nstart it: systemctl --user start ozna-scheduler");

QString Words(const QDBusError& error)
{
    switch (error.type())
    {
    case QDBusError::AccessDenied:
        return QStringLiteral("the bus does not let this user reach the daemon: run the tool as the daemon's user");
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return QStringLiteral("the daemon does not answer: a peer may keep it waiting, or it has ended");
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected: return QStringLiteral("the daemon has left the bus") + START_IT;
    default: return QStringLiteral("the daemon answers with an error: %1").arg(error.message());
    }
}

template <typename Reply> Reply Answered(Reply reply)
{
    reply.waitForFinished();
    if (reply.isError())
        throw ToolError(Words(reply.error()));
    return reply;
}

template <typename Value> Value Answer(const QDBusReply<Value>& reply)
{
    if (!reply.isValid())
        throw ToolError(Words(reply.error()));
    return reply.value();
}

} // namespace

SchedulerLink::SchedulerLink()
{
    const QString service = QString::fromLatin1(SchedulerNames::SERVICE);
    if (!Answer(m_bus.Connection().interface()->isServiceRegistered(service)))
        throw ToolError(QStringLiteral("no scheduler runs on this session bus") + START_IT);
    m_proxy =
        std::make_unique<SchedulerProxy>(service, QString::fromLatin1(SchedulerNames::OBJECT_PATH), m_bus.Connection());
}

SchedulerLink::~SchedulerLink() = default;

SchedulerLink::State SchedulerLink::GetState()
{
    m_proxy->setTimeout(STATE_TIMEOUT_MS);
    const auto reply = Answered(m_proxy->IsEnabled());
    return {reply.argumentAt<1>(), reply.argumentAt<2>()};
}

void SchedulerLink::SetEnabled(bool isEnabled)
{
    m_proxy->setTimeout(LOAD_TIMEOUT_MS);
    static_cast<void>(Answered(m_proxy->SetEnabled(isEnabled)));
}

void SchedulerLink::SetScheduleFile(const QString& name)
{
    m_proxy->setTimeout(LOAD_TIMEOUT_MS);
    static_cast<void>(Answered(m_proxy->SetScheduleFile(name)));
}

void SchedulerLink::Reload()
{
    m_proxy->setTimeout(LOAD_TIMEOUT_MS);
    static_cast<void>(Answered(m_proxy->Reload()));
}

qint64 SchedulerLink::ProcessId()
{
    return Answer(m_bus.Connection().interface()->servicePid(QString::fromLatin1(SchedulerNames::SERVICE)));
}
