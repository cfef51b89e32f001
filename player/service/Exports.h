#pragma once

class LightObject;
class QDBusConnection;
class SoundObject;

// What the player is on the bus. An object comes ahead of its name, so that whoever finds the name finds the object.
namespace Exports
{

// False, and a record, when the bus does not take it: another process may have the name.
[[nodiscard]] bool Register(QDBusConnection& bus, SoundObject& object);
[[nodiscard]] bool Register(QDBusConnection& bus, LightObject& object);

} // namespace Exports
