#include "KindReading.h"

#include "Reading.h"

#include <array>

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
        requests.append(QStringLiteral("soundmanager SetPlayerVolume(s:%1, d:%2)")
                            .arg(QLatin1String(player), QVariant(double(volume)).toString()));
    requests.append(QStringLiteral("soundmanager ") + request);
    return requests;
}

QStringList Light(const QStringList& parameters)
{
    const auto intensity = static_cast<unsigned int>(Reading::NumberAt(parameters, 0, 0));
    if (intensity == 0)
        return {QStringLiteral("lightmanager Switch(b:false)")};
    return {QStringLiteral("lightmanager SetIntensity(u:%1)").arg(intensity),
            QStringLiteral("lightmanager Switch(b:true)")};
}

QStringList Message(const QStringList& parameters)
{
    return Playing("file", Reading::NumberAt(parameters, 1, -1),
                   QStringLiteral("PlayFile(s:") + parameters[0] + QStringLiteral(", s:08:30:00)"));
}

QStringList Playlist(const QStringList& parameters)
{
    return Playing("playlist", Reading::NumberAt(parameters, 1, -1),
                   QStringLiteral("PlayPlaylist(s:") + parameters[0] + QStringLiteral(", s:") + parameters.value(2) +
                       QStringLiteral(", u:1, s:08:30:00, b:false)"));
}

QStringList Stream(const QStringList& parameters)
{
    return Playing("stream", Reading::NumberAt(parameters, 1, -1),
                   QStringLiteral("PlayStream(s:rtsp://10.0.0.5:") + parameters[0] + QStringLiteral(", u:0)"));
}

QStringList Photo(const QStringList& parameters)
{
    if (Reading::NumberAt(parameters, 1, SINGLE_PHOTO) == SINGLE_PHOTO)
        return {QStringLiteral("photomanager TakePhoto()")};
    return {QStringLiteral("photomanager TakePhotoStream(i:%1)").arg(Reading::NumberAt(parameters, 0, 0))};
}

QStringList MasterVolume(const QStringList& parameters)
{
    return {QStringLiteral("soundmanager SetMasterVolume(d:%1)")
                .arg(QVariant(double(Reading::NumberAt(parameters, 0, 0))).toString())};
}

QStringList Radio(const QStringList& parameters)
{
    bool isNumber = false;
    const double frequency = parameters[0].toDouble(&isNumber);
    if (!isNumber || frequency == 0.0)
        return {QStringLiteral("soundmanager StopPlay(s:radiofm, s:)")};
    return {QStringLiteral("soundmanager PlayRadioFm()"),
            QStringLiteral("soundmanager RadioFmSetFrequency(d:%1)").arg(QVariant(frequency).toString())};
}

QStringList Mask(const QStringList& parameters)
{
    return {QStringLiteral("soundmanager SetAmplifiers(y:%1)").arg(Reading::NumberAt(parameters, 0, 0) & 0xff)};
}

QStringList Speed(const QStringList&)
{
    return {QStringLiteral("freqmanager SetFreq(i:456)")};
}

QStringList Camera(const QStringList& parameters)
{
    return {IsOn(parameters) ? QStringLiteral("photomanager EnableCamera(b:true)")
                             : QStringLiteral("photomanager EnableCamera(b:false)")};
}

QStringList Gps(const QStringList& parameters)
{
    return {IsOn(parameters) ? QStringLiteral("gpsmanager SetEnabled(b:true)")
                             : QStringLiteral("gpsmanager SetEnabled(b:false)")};
}

QStringList Lan(const QStringList& parameters)
{
    return {IsOn(parameters) ? QStringLiteral("networkmanager EnableLan(b:true, s:, s:, s:)")
                             : QStringLiteral("networkmanager DisableLan()")};
}

QStringList Aux(const QStringList& parameters)
{
    return {IsOn(parameters) ? QStringLiteral("soundmanager PlayAux()")
                             : QStringLiteral("soundmanager StopPlay(s:aux, s:)")};
}

QStringList StopPlaylist(const QStringList& parameters)
{
    return {QStringLiteral("soundmanager StopPlay(s:playlist, s:") + parameters.value(0) + u')'};
}

QStringList StopMessage(const QStringList&)
{
    return {QStringLiteral("soundmanager StopPlay(s:file, s:)")};
}

QStringList StopRadio(const QStringList&)
{
    return {QStringLiteral("soundmanager StopPlay(s:radiofm, s:)")};
}

QStringList StopStream(const QStringList&)
{
    return {QStringLiteral("soundmanager StopPlay(s:stream, s:)")};
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
