#include "PlayerSettings.h"

#include "Address.h"
#include "PlayerLog.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

const QString SECTION = QStringLiteral("PLAYER");
constexpr double MS_PER_S = 1000;
constexpr double LONGEST_GAP_S = 3600;
constexpr double GREATEST_OFFSET_MS = 10'000;
constexpr double FULL = 100; // percent
constexpr double SAME_FREQUENCY_MHZ = 0.005;

const QString RADIO = QStringLiteral("Radio");
const QString AMPLIFIER = QStringLiteral("Amplifier");

struct Value
{
    QString key;
    QString text;
};

// Takes a value over; false when it is of no use.
using Take = bool (*)(const Value& value, PlayerSettings& settings);

std::optional<double> Number(const QString& text, double least, double greatest)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && number >= least && number <= greatest ? std::optional(number) : std::nullopt;
}

// Whether text is one of the devices: its kind, ":" and its name.
bool IsDevice(const QString& text, const QStringList& kinds)
{
    return std::ranges::any_of(
        kinds, [&](const QString& kind) { return text.startsWith(kind + u':') && text.size() > kind.size() + 1; });
}

// A name below /sys/class, and no way out of it.
bool IsOutputName(const QString& name)
{
    return !name.isEmpty() && !name.contains(u'/') && name != QLatin1String("..") && name != QLatin1String(".");
}

bool TakeFolder(const QString& text, QString& folder)
{
    if (!QDir::isAbsolutePath(text))
        return false;
    folder = QDir::cleanPath(text);
    return true;
}

bool TakeOutput(const Value& value, PlayerSettings& settings)
{
    if (value.text.isEmpty())
        return true;
    // Also what is of no use: sound that goes elsewhere, or another output's failure, would hide the mistake.
    settings.sound.output = value.text;
    return value.text == QLatin1String("pulse") ||
           IsDevice(value.text, {QStringLiteral("pulse"), QStringLiteral("alsa"), QStringLiteral("file")});
}

bool TakeMedia(const Value& value, PlayerSettings& settings)
{
    return TakeFolder(value.text, settings.media);
}

bool TakePlaylists(const Value& value, PlayerSettings& settings)
{
    return TakeFolder(value.text, settings.playlists);
}

bool TakeGap(const Value& value, PlayerSettings& settings)
{
    const std::optional<double> gap_s = Number(value.text, 0, LONGEST_GAP_S);
    settings.gap_ms = gap_s ? std::llround(*gap_s * MS_PER_S) : settings.gap_ms;
    return gap_s.has_value();
}

bool TakeDuck(const Value& value, PlayerSettings& settings)
{
    const std::optional<double> percent = Number(value.text, 0, FULL);
    settings.sound.duck_percent = percent.value_or(settings.sound.duck_percent);
    return percent.has_value();
}

bool TakeOffset(const Value& value, PlayerSettings& settings)
{
    const std::optional<double> offset_ms = Number(value.text, -GREATEST_OFFSET_MS, GREATEST_OFFSET_MS);
    settings.sound.offset_ms = offset_ms ? std::llround(*offset_ms) : settings.sound.offset_ms;
    return offset_ms.has_value();
}

bool TakeAux(const Value& value, PlayerSettings& settings)
{
    const bool isDevice = IsDevice(value.text, {QStringLiteral("alsa"), QStringLiteral("pulse")});
    if (isDevice)
        settings.aux = value.text;
    return isDevice;
}

bool TakeLights(const Value& value, PlayerSettings& settings)
{
    QStringList names = value.text.split(u',');
    for (QString& name : names)
        name = name.trimmed();
    if (!std::ranges::all_of(names, IsOutputName))
        return false;
    settings.lights = names;
    return true;
}

// "Radio98.5": the key has the frequency.
bool TakeStation(const Value& value, PlayerSettings& settings)
{
    bool isNumber = false;
    const double frequency_MHz = value.key.mid(RADIO.size()).toDouble(&isNumber);
    if (!isNumber || !(frequency_MHz > 0) || !Address::IsStream(value.text) || settings.StationAt(frequency_MHz))
        return false;
    settings.stations.append({frequency_MHz, value.text});
    return true;
}

// "Amplifier1".
bool TakeAmplifier(const Value& value, PlayerSettings& settings)
{
    bool isNumber = false;
    const int number = value.key.mid(AMPLIFIER.size()).toInt(&isNumber);
    if (!isNumber || number < 1 || number > PlayerSettings::AMPLIFIERS || !IsOutputName(value.text))
        return false;
    settings.amplifiers.insert(number, value.text);
    return true;
}

struct Key
{
    const char* name;
    bool isBeginning; // of the keys that are meant
    Take take;
    const char* form; // of a value that is of use
};

constexpr std::array KEYS{
    Key{"Output", false, TakeOutput, "pulse, pulse:SINK, alsa:DEVICE or file:PATH; nothing is played"},
    Key{"Media", false, TakeMedia, "an absolute path"},
    Key{"Playlists", false, TakePlaylists, "an absolute path"},
    Key{"Gap", false, TakeGap, "seconds from 0 to 3600, as 1.5"},
    Key{"Duck", false, TakeDuck, "percent from 0 to 100"},
    Key{"Offset_ms", false, TakeOffset, "milliseconds from -10000 to 10000"},
    Key{"Aux", false, TakeAux, "alsa:DEVICE or pulse:DEVICE"},
    Key{"Light", false, TakeLights, "names of outputs with commas in between"},
    Key{"Radio", true, TakeStation, "a frequency once, as Radio98.5, and the address of a stream"},
    Key{"Amplifier", true, TakeAmplifier, "a number from 1 to 8, as Amplifier1, and the name of an output"},
};

bool IsOf(const Key& key, const QString& name)
{
    const QLatin1String known(key.name);
    return key.isBeginning ? name.startsWith(known) : name == known;
}

void TakeValue(const Value& value, const QString& file, PlayerSettings& settings)
{
    const auto* const key = std::ranges::find_if(KEYS, [&](const Key& row) { return IsOf(row, value.key); });
    if (key == KEYS.end())
        settings.complaints.append(PLAYER_TELL(LEVEL_WARNING, "%s: [PLAYER] %s is no setting of the player",
                                               qPrintable(file), qPrintable(value.key)));
    else if (!key->take(value, settings))
        settings.complaints.append(PLAYER_TELL(LEVEL_WARNING, "%s: [PLAYER] %s=%s is of no use: it takes %s",
                                               qPrintable(file), qPrintable(value.key), qPrintable(value.text),
                                               key->form));
}

} // namespace

const PlayerSettings::Station* PlayerSettings::StationAt(double frequency_MHz) const
{
    const auto station = std::ranges::find_if(stations, [frequency_MHz](const Station& known) {
        return std::abs(known.frequency_MHz - frequency_MHz) < SAME_FREQUENCY_MHZ;
    });
    return station == stations.end() ? nullptr : &*station;
}

QStringList PlayerSettings::Names()
{
    QStringList names;
    for (const Key& key : KEYS)
        names.append(QString::fromLatin1(key.name));
    return names;
}

QString PlayerSettings::File()
{
    const QByteArray named = qgetenv(FILE_VARIABLE);
    return QFile::decodeName(named.isEmpty() ? QByteArray(DEFAULT_FILE) : named);
}

PlayerSettings PlayerSettings::Read()
{
    PlayerSettings settings;
    const QString file = File();
    const QFileInfo info(file);
    if (!info.exists())
        return settings;
    QSettings ini(file, QSettings::IniFormat);
    ini.beginGroup(SECTION);
    const QStringList keys = ini.childKeys();
    if (!info.isFile() || !info.isReadable() || ini.status() != QSettings::NoError)
    {
        settings.complaints.append(
            PLAYER_TELL(LEVEL_WARNING, "%s cannot be read, and does not count", qPrintable(file)));
        return settings;
    }
    for (const QString& key : keys)
        // A value with commas reads back as a list: it was one text in the file.
        TakeValue({key, ini.value(key).toStringList().join(u',').trimmed()}, file, settings);
    return settings;
}
