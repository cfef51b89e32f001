#include "PhotoManager.h"

#include "PeerCall.h"
#include "PeerOwner.h"
#include "PeerProxies.h"

#include <PhotoManagerProxy.h>

namespace
{

PeerReply Call(const char* method, const QVariantList& arguments = {})
{
    return PeerCall::Send(PeerProxies::m_photoManProxy, QString::fromLatin1(method), arguments);
}

} // namespace

PeerReply PhotoManager::EnableCamera(bool enable)
{
    return Call(ENABLE_CAMERA, {enable});
}

PeerReply PhotoManager::TakePhoto()
{
    return Call(TAKE_PHOTO);
}

PeerReply PhotoManager::TakePhotoStream(int interval_s)
{
    return Call(TAKE_PHOTO_STREAM, {interval_s});
}

PeerReply PhotoManager::StopPhotoStream()
{
    return Call(STOP_PHOTO_STREAM);
}

const PhotoManagerProxy* PhotoManager::Signals()
{
    return PeerProxies::m_photoManProxy;
}

const PeerOwner* PhotoManager::Owner()
{
    return PeerOwner::Of(PeerProxies::m_photoManProxy);
}
