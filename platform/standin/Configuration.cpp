#include "Configuration.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace
{

constexpr const char* FILE_VARIABLE = "OZNA_CONFIG_FILE";
constexpr const char* DEFAULT_FILE = "/opt/ozna/config/ozna.ini";

QString ConfigFile()
{
    const QByteArray named = qgetenv(FILE_VARIABLE);
    return QFile::decodeName(named.isEmpty() ? QByteArray(DEFAULT_FILE) : named);
}

// QSettings keeps a section [General], in whatever case, as its nameless one.
QString SettingsKey(const QString& group, const QString& key)
{
    const bool nameless = group.compare(QLatin1String("general"), Qt::CaseInsensitive) == 0;
    return nameless ? key : group + QLatin1Char('/') + key;
}

} // namespace

Configuration::Configuration(const char* objectPath)
{
    // The file is the same for every object; the path is the device library's.
    Q_UNUSED(objectPath)
    const QString path = ConfigFile();
    const QFileInfo info(path);
    if (!info.isFile() || !info.isReadable())
        return;
    auto settings = std::make_unique<QSettings>(path, QSettings::IniFormat);
    // Sections are parsed when they are asked for: only then does a malformed one show.
    static_cast<void>(settings->allKeys());
    if (settings->status() == QSettings::NoError)
        m_settings = std::move(settings);
}

Configuration::~Configuration() = default;

bool Configuration::IsValid() const
{
    return m_settings != nullptr;
}

QString Configuration::ReadConfigValue(const QString& group, const QString& key, const QString& defaultValue, bool* ok,
                                       bool useDefault)
{
    Q_UNUSED(useDefault)
    const QString name = SettingsKey(group, key);
    const bool found = m_settings && m_settings->contains(name);
    if (ok != nullptr)
        *ok = found;
    if (found)
        // A value with commas reads back as a list, without the blanks around them: it was one text in the file.
        return m_settings->value(name).toStringList().join(QLatin1Char(','));
    return defaultValue;
}
