#include "TaskRequests.h"

#include "Action.h"
#include "base/ToolError.h"
#include "peers/PeerCall.h"
#include "peers/Peers.h"

#include <QDBusAbstractInterface>

#include <utility>

namespace
{

constexpr qint64 NO_MOMENT = 0;

} // namespace

TaskRequests::TaskRequests(const Workspace& workspace)
    : m_use(workspace)
{
    Peers::CreateProxies();
    PeerCall::SetTransport([this](QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments) {
        m_requests.append(Request::Sent(NO_MOMENT, *proxy, method, arguments));
        return PeerReply(0);
    });
}

TaskRequests::~TaskRequests()
{
    // What plays stops with its task: nothing that it was asked for.
    PeerCall::SetTransport([](QDBusAbstractInterface*, const QString&, const QVariantList&) { return PeerReply(0); });
    Peers::DeleteProxies();
}

QList<Request> TaskRequests::Of(Action& action)
{
    const auto connection =
        QObject::connect(&action, &Action::PddActionRequested, &action, [this](PDD_ACTION pddAction, bool enable) {
            m_requests.append(Request::Announcement(NO_MOMENT, pddAction, enable));
        });
    if (!connection)
        throw ToolError(QStringLiteral("an action cannot be listened to"));
    m_requests.clear();
    action.Start();
    QObject::disconnect(connection);
    return std::exchange(m_requests, {});
}

QList<Request> TaskRequests::Of(const Workspace& workspace, Action& action)
{
    return TaskRequests(workspace).Of(action);
}
