#include "SoundSignals.h"

#include <SoundManagerProxy.h>

#include <stdexcept>

SoundSignals::SoundSignals(SoundManagerProxy* proxy)
    : QObject(proxy)
{
    if (!connect(proxy, &SoundManagerProxy::PlayFileCompleted, this, &SoundSignals::PlayFileCompleted) ||
        !connect(proxy, &SoundManagerProxy::PlayPlaylistCompleted, this, &SoundSignals::PlayPlaylistCompleted) ||
        !connect(proxy, &SoundManagerProxy::StreamEnabled, this, &SoundSignals::StreamEnabled))
        throw std::runtime_error("peer signals");
}

const SoundSignals* SoundSignals::Of(const SoundManagerProxy* proxy)
{
    return proxy == nullptr ? nullptr : proxy->findChild<SoundSignals*>(QString(), Qt::FindDirectChildrenOnly);
}
