#include "LastCalls.h"

#include "process/StopRequest.h"

#include <QSet>

namespace
{

bool m_isDeleting = false;

QSet<const QDBusAbstractInterface*>& SilentPeers()
{
    static QSet<const QDBusAbstractInterface*> peers;
    return peers;
}

} // namespace

LastCalls::LastCalls()
{
    m_isDeleting = true;
}

LastCalls::~LastCalls()
{
    m_isDeleting = false;
}

bool LastCalls::MayAsk()
{
    return m_isDeleting || !StopRequest::IsMade();
}

void LastCalls::NoteTimeOut(const QDBusAbstractInterface* proxy)
{
    if (StopRequest::IsMade())
        SilentPeers().insert(proxy);
}

bool LastCalls::IsSilent(const QDBusAbstractInterface* proxy)
{
    return SilentPeers().contains(proxy);
}
