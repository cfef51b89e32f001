#include "KindReading.h"

#include "Reading.h"

#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr int MANY = 1 << 30;
constexpr int SINGLE_PHOTO = 1;

bool IsOn(const QStringList& parameters)
{
    return Reading::NumberAt(parameters, 0, 0) == 1;
}

// A playback, with its volume set before it where it has one.
QStringList Playing(const char* player, int volume, const QString& request)
{
    QStringList requests;
    if (volume >= 0)
        requests.append(
            u"sound.SetPlayerVolume sd %1 %2"_s.arg(QLatin1String(player), QVariant(double(volume)).toString()));
    requests.append(u"sound."_s + request);
    return requests;
}

QStringList Light(const QStringList& parameters)
{
    const auto intensity = static_cast<unsigned int>(Reading::NumberAt(parameters, 0, 0));
    if (intensity == 0)
        return {u"light.Switch b false"_s};
    return {u"light.SetIntensity u %1"_s.arg(intensity), u"light.Switch b true"_s};
}

QStringList Message(const QStringList& parameters)
{
    return Playing("file", Reading::NumberAt(parameters, 1, -1), u"PlayFile ss "_s + parameters[0] + u" 08:30:00"_s);
}

QStringList Playlist(const QStringList& parameters)
{
    return Playing("playlist", Reading::NumberAt(parameters, 1, -1),
                   u"PlayPlaylist ssusb "_s + parameters[0] + u' ' + parameters.value(2) + u" 1 08:30:00 false"_s);
}

QStringList Stream(const QStringList& parameters)
{
    return Playing("stream", Reading::NumberAt(parameters, 1, -1),
                   u"PlayStream su rtsp://10.0.0.5:"_s + parameters[0] + u" 0"_s);
}

QStringList Photo(const QStringList& parameters)
{
    if (Reading::NumberAt(parameters, 1, SINGLE_PHOTO) == SINGLE_PHOTO)
        return {u"photo.TakePhoto -"_s};
    return {u"photo.TakePhotoStream i %1"_s.arg(Reading::NumberAt(parameters, 0, 0))};
}

QStringList MasterVolume(const QStringList& parameters)
{
    return {u"sound.SetMasterVolume d %1"_s.arg(QVariant(double(Reading::NumberAt(parameters, 0, 0))).toString())};
}

QStringList Radio(const QStringList& parameters)
{
    bool isNumber = false;
    const double frequency = parameters[0].toDouble(&isNumber);
    if (!isNumber || frequency == 0.0)
        return {u"sound.StopPlay ss radiofm "_s};
    return {u"sound.PlayRadioFm -"_s, u"sound.RadioFmSetFrequency d %1"_s.arg(QVariant(frequency).toString())};
}

QStringList Mask(const QStringList& parameters)
{
    return {u"sound.SetAmplifiers y %1"_s.arg(Reading::NumberAt(parameters, 0, 0) & 0xff)};
}

QStringList Speed(const QStringList&)
{
    return {u"freq.SetFreq i 456"_s};
}

QStringList Camera(const QStringList& parameters)
{
    return {IsOn(parameters) ? u"photo.EnableCamera b true"_s : u"photo.EnableCamera b false"_s};
}

QStringList Gps(const QStringList& parameters)
{
    return {IsOn(parameters) ? u"gps.SetEnabled b true"_s : u"gps.SetEnabled b false"_s};
}

QStringList Lan(const QStringList& parameters)
{
    return {IsOn(parameters) ? u"network.EnableLan bsss true   "_s : u"network.DisableLan -"_s};
}

QStringList Aux(const QStringList& parameters)
{
    return {IsOn(parameters) ? u"sound.PlayAux -"_s : u"sound.StopPlay ss aux "_s};
}

QStringList StopPlaylist(const QStringList& parameters)
{
    return {u"sound.StopPlay ss playlist "_s + parameters.value(0)};
}

QStringList StopMessage(const QStringList&)
{
    return {u"sound.StopPlay ss file "_s};
}

QStringList StopRadio(const QStringList&)
{
    return {u"sound.StopPlay ss radiofm "_s};
}

QStringList StopStream(const QStringList&)
{
    return {u"sound.StopPlay ss stream "_s};
}

QStringList Nothing(const QStringList&)
{
    return {};
}

// clang-format off
constexpr std::array KINDS{
    KindReading{"Light", 1, MANY, "lightmanager", Light},
    KindReading{"PlayMessage", 1, MANY, "soundmanager", Message},
    KindReading{"PlayPlaylist", 1, MANY, "soundmanager", Playlist},
    KindReading{"RecordMic", -1, MANY, "", Nothing},
    KindReading{"RecordPhoto", 0, MANY, "photomanager", Photo},
    KindReading{"Volume", 1, MANY, "soundmanager", MasterVolume},
    KindReading{"PlayRadioFm", 1, MANY, "soundmanager", Radio},
    KindReading{"RecordVideo", -1, MANY, "", Nothing},
    KindReading{"Amplifiers", 1, MANY, "soundmanager", Mask},
    KindReading{"SetCpuFreq", 1, MANY, "freqmanager", Speed},
    KindReading{"Camera", 1, MANY, "photomanager", Camera},
    KindReading{"Gps", 1, MANY, "gpsmanager", Gps},
    KindReading{"Lan", 1, MANY, "networkmanager", Lan},
    KindReading{"StopPlaylist", 0, MANY, "soundmanager", StopPlaylist},
    KindReading{"StopMessage", 0, MANY, "soundmanager", StopMessage},
    KindReading{"StopRadioFm", 0, MANY, "soundmanager", StopRadio},
    KindReading{"PlayStream", 1, MANY, "soundmanager", Stream},
    KindReading{"StopStream", 0, MANY, "soundmanager", StopStream},
    KindReading{"enableAux", 1, 1, "soundmanager", Aux},
    KindReading{nullptr, 2, 2, "", Nothing},
};
// clang-format on

} // namespace

std::span<const KindReading> KindReading::All()
{
    return KINDS;
}
