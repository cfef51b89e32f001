#include "Exports.h"

#include "LightObject.h"
#include "PlayerLog.h"
#include "SoundObject.h"
#include "peers/LightManager.h"

#include <LightAdaptor.h>
#include <SoundAdaptor.h>

#include <QDBusConnection>

namespace
{

bool Export(QDBusConnection& bus, QObject& object, const char* service, const char* path)
{
    if (!bus.registerObject(QString::fromLatin1(path), &object))
    {
        PLAYER_LOG(LEVEL_ERROR, "DBUS: Can't register object [%s]", path);
        return false;
    }
    if (!bus.registerService(QString::fromLatin1(service)))
    {
        PLAYER_LOG(LEVEL_ERROR, "DBUS: Can't register service [%s]: another process may have it", service);
        return false;
    }
    return true;
}

} // namespace

bool Exports::Register(QDBusConnection& bus, SoundObject& object)
{
    new SoundAdaptor(&object);
    return Export(bus, object, SoundManager::SERVICE, SoundManager::PATH);
}

bool Exports::Register(QDBusConnection& bus, LightObject& object)
{
    new LightAdaptor(&object);
    return Export(bus, object, LightManager::SERVICE, LightManager::PATH);
}
