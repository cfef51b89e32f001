#include "SoundManager.h"

#include "PeerCall.h"
#include "Scheduler.h"

#include <SoundManagerProxy.h>

namespace
{
const QString TIME_FORMAT = QStringLiteral("hh:mm:ss");
}

PeerReply SoundManager::Call(const char* method, const QVariantList& arguments)
{
    return PeerCall::Send(Scheduler::m_soundManProxy, QString::fromLatin1(method), arguments);
}

PeerReply SoundManager::StopPlay(const char* source, const QString& identifier)
{
    return Call(STOP_PLAY, {QString::fromLatin1(source), identifier});
}

QTime SoundManager::ParseTime(const QString& text)
{
    return QTime::fromString(text, TIME_FORMAT);
}

QString SoundManager::FormatTime(const QTime& time)
{
    return time.toString(TIME_FORMAT);
}
