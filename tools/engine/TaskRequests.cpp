#include "TaskRequests.h"

#include "Action.h"
#include "Workspace.h"
#include "base/ToolError.h"
#include "peers/PeerCall.h"
#include "peers/Peers.h"

#include <QDBusAbstractInterface>

namespace
{

constexpr qint64 NO_MOMENT = 0;

// Peers that note into requests what they are asked for, for as long as the object lives.
class AcceptingPeers final
{
public:
    explicit AcceptingPeers(QList<Request>& requests)
    {
        Peers::CreateProxies();
        PeerCall::SetTransport(
            [&requests](QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments) {
                requests.append(Request::Sent(NO_MOMENT, *proxy, method, arguments));
                return PeerReply(0);
            });
    }
    ~AcceptingPeers()
    {
        // What plays stops with its task: nothing that it was asked for.
        PeerCall::SetTransport(
            [](QDBusAbstractInterface*, const QString&, const QVariantList&) { return PeerReply(0); });
        Peers::DeleteProxies();
    }

    AcceptingPeers(const AcceptingPeers&) = delete;
    AcceptingPeers& operator=(const AcceptingPeers&) = delete;
};

} // namespace

QList<Request> TaskRequests::Of(const Workspace& workspace, Action& action)
{
    const Workspace::Use use(workspace);
    QList<Request> requests;
    const AcceptingPeers peers(requests);
    const auto connection =
        QObject::connect(&action, &Action::PddActionRequested, &action, [&](PDD_ACTION pddAction, bool enable) {
            requests.append(Request::Announcement(NO_MOMENT, pddAction, enable));
        });
    if (!connection)
        throw ToolError(QStringLiteral("an action cannot be listened to"));
    action.Start();
    QObject::disconnect(connection);
    return requests;
}
