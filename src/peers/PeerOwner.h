#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

class QDBusAbstractInterface;

// Who owns a manager's name on the bus, as far as the event loop has been told: a change has its place among the bus's
// signals and answers, and waits while the loop is blocked.
class PeerOwner final : public QObject
{
    Q_OBJECT
public:
    // Belongs to proxy, and asks the bus once; without a bus, nobody owns the name. Throws std::runtime_error when it
    // cannot listen.
    explicit PeerOwner(QDBusAbstractInterface* proxy);
    ~PeerOwner() override;

    // The one that belongs to proxy; null when it has none, or is null itself.
    [[nodiscard]] static const PeerOwner* Of(const QDBusAbstractInterface* proxy);

    // The unique name of the owner's connection; empty: there is no owner.
    [[nodiscard]] const QString& Name() const { return m_name; }

    // The name has passed from earlier to name; either may be empty.
    void Change(const QString& earlier, const QString& name);

Q_SIGNALS:
    // The connection of that unique name does not own the manager's name any more.
    void Left(const QString& earlier);

private:
    QDBusServiceWatcher m_watcher;
    QString m_name;
};
