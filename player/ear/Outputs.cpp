#include "Outputs.h"

#include <gst/gst.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <memory>

namespace
{

struct Unref
{
    void operator()(gpointer object) const { gst_object_unref(object); }
};
template <typename Object> using Ref = std::unique_ptr<Object, Unref>;

QString Taken(gchar* text)
{
    QString taken = QString::fromUtf8(text);
    g_free(text);
    return taken;
}

// The devices that a provider of the library finds and that play sound.
std::vector<Ref<GstDevice>> Sinks(const char* provider)
{
    std::vector<Ref<GstDevice>> sinks;
    const Ref<GstDeviceProvider> found(gst_device_provider_factory_get_by_name(provider));
    if (!found)
        return sinks;
    // Only one that has been started knows which device is the default one. One that cannot be looks once.
    const bool isStarted = gst_device_provider_start(found.get()) != FALSE;
    GList* const devices = gst_device_provider_get_devices(found.get());
    for (GList* entry = devices; entry; entry = entry->next)
    {
        Ref<GstDevice> device(GST_DEVICE_CAST(entry->data));
        if (gst_device_has_classes(device.get(), "Audio/Sink"))
            sinks.push_back(std::move(device));
    }
    g_list_free(devices);
    if (isStarted)
        gst_device_provider_stop(found.get());
    return sinks;
}

bool IsDefault(GstDevice* device)
{
    GstStructure* const properties = gst_device_get_properties(device);
    gboolean isDefault = FALSE;
    if (properties)
    {
        gst_structure_get_boolean(properties, "is-default", &isDefault);
        gst_structure_free(properties);
    }
    return isDefault != FALSE;
}

// What the device is called by the element that plays to it: "hw:0,0".
QString ElementDevice(GstDevice* device)
{
    GstElement* const created = gst_device_create_element(device, nullptr);
    if (!created)
        return {};
    const Ref<GstElement> element(GST_ELEMENT_CAST(gst_object_ref_sink(created)));
    gchar* name = nullptr;
    g_object_get(element.get(), "device", &name, nullptr);
    return Taken(name);
}

// A card by its lasting name, whichever of its names is given: "plughw:0,0", "hw:PCH" and "hw:CARD=PCH,DEV=0" are one.
// Empty for what is no card's.
QString CardName(const QString& device, const QString& folder)
{
    static const QRegularExpression form(QStringLiteral("^(?:plug)?hw:(?:CARD=)?([^,=]+)(?:,(?:DEV=)?([0-9]+))?$"));
    const QRegularExpressionMatch match = form.match(device);
    if (!match.hasMatch())
        return {};
    const QString card = match.captured(1);
    const QString number = match.captured(2).isEmpty() ? QStringLiteral("0") : match.captured(2);
    bool isNumber = false;
    static_cast<void>(card.toUInt(&isNumber));
    return isNumber ? Outputs::LastingName(QStringLiteral("hw:%1,%2").arg(card, number), folder)
                    : QStringLiteral("plughw:CARD=%1,DEV=%2").arg(card, number);
}

} // namespace

QString Outputs::LastingName(const QString& device, const QString& folder)
{
    static const QRegularExpression numbered(QStringLiteral("^hw:([0-9]+),([0-9]+)$"));
    const QRegularExpressionMatch match = numbered.match(device);
    if (!match.hasMatch())
        return device;
    QFile file(QStringLiteral("%1/card%2/id").arg(folder, match.captured(1)));
    const QString card = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    return card.isEmpty() ? QStringLiteral("plug") + device
                          : QStringLiteral("plughw:CARD=%1,DEV=%2").arg(card, match.captured(2));
}

QList<Outputs::Output> Outputs::All()
{
    QList<Output> outputs;
    gst_init(nullptr, nullptr);
    const std::vector<Ref<GstDevice>> sinks = Sinks("pulsedeviceprovider");
    for (const Ref<GstDevice>& device : sinks)
    {
        if (IsDefault(device.get()))
            outputs.append({QStringLiteral("pulse"), Taken(gst_device_get_display_name(device.get()))});
    }
    for (const Ref<GstDevice>& device : sinks)
    {
        if (const QString name = ElementDevice(device.get()); !name.isEmpty())
            outputs.append({QStringLiteral("pulse:") + name, Taken(gst_device_get_display_name(device.get()))});
    }
    for (const Ref<GstDevice>& device : Sinks("alsadeviceprovider"))
    {
        if (const QString name = ElementDevice(device.get()); !name.isEmpty())
            outputs.append(
                {QStringLiteral("alsa:") + LastingName(name), Taken(gst_device_get_display_name(device.get()))});
    }
    return outputs;
}

Outputs::Presence Outputs::PresenceOf(const QString& setting, const QList<Output>& outputs, const QString& folder)
{
    const QString kind = setting.section(u':', 0, 0);
    const QString name = setting.section(u':', 1);
    const auto presence = [](bool isThere) { return isThere ? Presence::THERE : Presence::MISSING; };
    if (kind == QLatin1String("file"))
        return presence(!name.isEmpty() && QFileInfo(QFileInfo(name).path()).isDir());
    const QString card = kind == QLatin1String("alsa") ? CardName(name, folder) : QString();
    const QString wanted = card.isEmpty() ? setting : QStringLiteral("alsa:") + card;
    const bool isListed = std::ranges::find(outputs, wanted, &Output::setting) != outputs.end();
    if (!isListed && kind == QLatin1String("alsa") && card.isEmpty() && !name.isEmpty())
        return Presence::UNKNOWN;
    return presence(isListed);
}

const char* Outputs::WordsOf(Presence presence)
{
    switch (presence)
    {
    case Presence::THERE: return "is there";
    case Presence::MISSING: return "is not there";
    default: return "is no card of the list: ozna-player --test tells whether it plays";
    }
}
