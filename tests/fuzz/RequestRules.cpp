#include "RequestRules.h"

#include "Findings.h"
#include "KindReading.h"

#include <QDBusMetaType>
#include <QTime>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr int LIBRARY_DEFAULT_MS = -1;

using Values = QVariantList;

bool AnyValues(const Values&)
{
    return true;
}

bool IsSentTime(const QVariant& value)
{
    const QString text = value.toString();
    return text.isEmpty() || QTime::fromString(text, u"hh:mm:ss"_s).toString(u"hh:mm:ss"_s) == text;
}

bool IsPlayerVolume(const Values& values)
{
    static const QStringList players{u"file"_s, u"playlist"_s, u"stream"_s};
    return players.contains(values[0].toString()) && values[1].toDouble() >= 0;
}

bool IsFile(const Values& values)
{
    return IsSentTime(values[1]);
}

bool IsPlaylist(const Values& values)
{
    return !values[0].toString().isEmpty() && values[2].toUInt() >= 1 && IsSentTime(values[3]) && !values[4].toBool();
}

bool IsStream(const Values& values)
{
    return values[0].toString().startsWith(u"rtsp://"_s) && values[1].toUInt() == 0;
}

bool IsStop(const Values& values)
{
    static const QStringList sources{u"file"_s, u"playlist"_s, u"stream"_s, u"radiofm"_s, u"aux"_s};
    const QString source = values[0].toString();
    return sources.contains(source) && (source == u"playlist"_s || values[1].toString().isEmpty());
}

bool IsFrequency(const Values& values)
{
    return values[0].toDouble() != 0.0;
}

bool IsEverySpeed(const Values& values)
{
    return values[0].toInt() == 456;
}

bool IsIntensity(const Values& values)
{
    return values[0].toUInt() != 0;
}

bool IsDhcp(const Values& values)
{
    return values[0].toBool() && std::all_of(values.begin() + 1, values.end(),
                                             [](const QVariant& text) { return text.toString().isEmpty(); });
}

struct Rule
{
    const char* peer;
    const char* method;
    const char* signature;
    int timeout_ms;
    bool (*isSound)(const Values& values);
};

constexpr std::array RULES{
    Rule{"soundmanager", "SetPlayerVolume", "sd", 3000, IsPlayerVolume},
    Rule{"soundmanager", "PlayFile", "ss", 3000, IsFile},
    Rule{"soundmanager", "PlayPlaylist", "ssusb", 5000, IsPlaylist},
    Rule{"soundmanager", "PlayStream", "su", 3000, IsStream},
    Rule{"soundmanager", "PlayRadioFm", "", 20000, AnyValues},
    Rule{"soundmanager", "RadioFmSetFrequency", "d", 3000, IsFrequency},
    Rule{"soundmanager", "PlayAux", "", 3000, AnyValues},
    Rule{"soundmanager", "StopPlay", "ss", 3000, IsStop},
    Rule{"soundmanager", "SetMasterVolume", "d", 3000, AnyValues},
    Rule{"soundmanager", "SetAmplifiers", "y", 3000, AnyValues},
    Rule{"photomanager", "EnableCamera", "b", 5000, AnyValues},
    Rule{"photomanager", "TakePhoto", "", 5000, AnyValues},
    Rule{"photomanager", "TakePhotoStream", "i", 5000, AnyValues},
    Rule{"photomanager", "StopPhotoStream", "", 5000, AnyValues},
    Rule{"freqmanager", "SetFreq", "i", 2000, IsEverySpeed},
    Rule{"gpsmanager", "SetEnabled", "b", 5000, AnyValues},
    Rule{"lightmanager", "SetIntensity", "u", LIBRARY_DEFAULT_MS, IsIntensity},
    Rule{"lightmanager", "Switch", "b", LIBRARY_DEFAULT_MS, AnyValues},
    Rule{"networkmanager", "EnableLan", "bsss", LIBRARY_DEFAULT_MS, IsDhcp},
    Rule{"networkmanager", "DisableLan", "", LIBRARY_DEFAULT_MS, AnyValues},
};

QByteArray SignatureOf(const QVariantList& arguments)
{
    QByteArray signature;
    for (const QVariant& argument : arguments)
        signature += QDBusMetaType::typeToSignature(argument.metaType());
    return signature;
}

} // namespace

QStringList RequestRules::Methods()
{
    QStringList methods;
    for (const Rule& rule : RULES)
        methods.append(QLatin1String(rule.method));
    return methods;
}

void RequestRules::Check(const PeerRequest& request)
{
    const auto* rule = std::ranges::find_if(
        RULES, [&request](const Rule& each) { return request.method == QLatin1String(each.method); });
    const QByteArray shown = request.Shown().toUtf8();
    EXPECT_THAT(rule != RULES.end(), shown);
    if (rule == RULES.end())
        return;
    EXPECT_THAT(request.service.section(u'.', -1) == QLatin1String(rule->peer), shown);
    EXPECT_THAT(request.timeout_ms == rule->timeout_ms, shown + QByteArray::number(request.timeout_ms));
    const bool isTyped = SignatureOf(request.arguments) == rule->signature;
    EXPECT_THAT(isTyped, shown);
    EXPECT_THAT(!isTyped || rule->isSound(request.arguments), shown);
}

QString RequestRules::PeerOf(TaskType type)
{
    return QLatin1String(KindReading::All()[static_cast<size_t>(type)].peer);
}
