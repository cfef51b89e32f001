#include "PeerOwner.h"

#include <QDBusAbstractInterface>
#include <QDBusConnectionInterface>
#include <QDBusReply>

#include <stdexcept>

PeerOwner::PeerOwner(QDBusAbstractInterface* proxy)
    : QObject(proxy)
    , m_watcher(proxy->service(), proxy->connection(), QDBusServiceWatcher::WatchForOwnerChange)
{
    if (!connect(
            &m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*service*/, const QString& earlier, const QString& name) { Change(earlier, name); }))
        throw std::runtime_error("peer owner");
    if (!proxy->connection().isConnected())
        return;
    // An error means that there is no owner.
    const QDBusReply<QString> owner = proxy->connection().interface()->serviceOwner(proxy->service());
    m_name = owner.isValid() ? owner.value() : QString();
}

PeerOwner::~PeerOwner() = default;

const PeerOwner* PeerOwner::Of(const QDBusAbstractInterface* proxy)
{
    return proxy != nullptr ? proxy->findChild<PeerOwner*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

void PeerOwner::Change(const QString& earlier, const QString& name)
{
    m_name = name;
    if (!earlier.isEmpty() && earlier != name)
        Q_EMIT Left(earlier);
}
