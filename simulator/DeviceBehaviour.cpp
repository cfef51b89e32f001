#include "DeviceBehaviour.h"

#include "Console.h"
#include "Simulator.h"

#include <array>

namespace
{

constexpr const char* SOUND = "com.kestrelix.ozna.soundinterface";
constexpr const char* PHOTO = "com.kestrelix.ozna.photointerface";
constexpr const char* LIGHT = "com.kestrelix.ozna.lightinterface";
constexpr const char* FREQ = "com.kestrelix.ozna.freqinterface";

} // namespace

// What a method brings about: a signal with the call's own arguments, or what a function does.
struct DeviceBehaviour::Reaction
{
    const char* interface;
    const char* method;
    const char* echo;
    void (DeviceBehaviour::*perform)(const Call& call);
};

DeviceBehaviour::DeviceBehaviour(Simulator& simulator)
    : m_simulator(simulator)
    , m_player([this](const QString& signal, const QVariantList& values) {
        Send(QString::fromLatin1(SOUND), signal, values);
    })
    , m_camera([this](const QString& signal, const QVariantList& values) {
        Send(QString::fromLatin1(PHOTO), signal, values);
    })
{
    connect(&simulator, &Simulator::Accepted, this, &DeviceBehaviour::React);
}

DeviceBehaviour::~DeviceBehaviour() = default;

void DeviceBehaviour::React(const Call& call)
{
    static constexpr std::array REACTIONS{
        Reaction{SOUND, "PlayFile", nullptr, &DeviceBehaviour::Play},
        Reaction{SOUND, "PlayPlaylist", nullptr, &DeviceBehaviour::Play},
        Reaction{SOUND, "PlayStream", nullptr, &DeviceBehaviour::Play},
        Reaction{SOUND, "StopPlay", nullptr, &DeviceBehaviour::StopPlay},
        Reaction{PHOTO, "TakePhoto", nullptr, &DeviceBehaviour::TakeOnePhoto},
        Reaction{PHOTO, "TakePhotoStream", nullptr, &DeviceBehaviour::StartPhotos},
        Reaction{PHOTO, "StopPhotoStream", nullptr, &DeviceBehaviour::StopPhotos},
        Reaction{PHOTO, "EnableCamera", "CameraEnabled", nullptr},
        Reaction{LIGHT, "SetIntensity", "LedStatus", nullptr},
        Reaction{LIGHT, "Switch", "LedSwitch", nullptr},
        Reaction{FREQ, "SetFreq", "FreqChanged", nullptr},
    };
    for (const Reaction& reaction : REACTIONS)
    {
        if (call.interface != QLatin1String(reaction.interface) || call.method != QLatin1String(reaction.method))
            continue;
        if (reaction.echo != nullptr)
            Send(call.interface, QString::fromLatin1(reaction.echo), call.arguments);
        else
            (this->*reaction.perform)(call);
    }
}

void DeviceBehaviour::Send(const QString& interface, const QString& signal, const QVariantList& values)
{
    SimulatedPeer* const peer = m_simulator.FindPeer(interface);
    if (peer == nullptr || !peer->SendSignal(signal, values))
        Console::Error(QStringLiteral("can't send signal %1.%2").arg(interface, signal));
}
