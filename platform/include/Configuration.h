#pragma once

#include <QString>
#include <QVariant>

#include <memory>

class QSettings;

// Reader of the device's configuration. Created where a value is needed and dropped afterwards,
// so that every read sees the file as it is then.
class Configuration
{
public:
    // objectPath: the D-Bus object on whose behalf the configuration is read.
    explicit Configuration(const char* objectPath);
    ~Configuration();

    Configuration(const Configuration&) = delete;
    Configuration& operator=(const Configuration&) = delete;

    // False when there is no readable configuration: nothing may be read then.
    [[nodiscard]] bool IsValid() const;

    // The value of key in group, or defaultValue. ok (not null) tells whether the key was there.
    // useDefault is the device library's own business; callers pass true.
    QString ReadConfigValue(const QString& group, const QString& key, const QString& defaultValue, bool* ok,
                            bool useDefault);

private:
    std::unique_ptr<QSettings> m_settings;
};
