#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// An output of the system that has a brightness: a LED, a relay that is driven like one, or a backlight.
class SystemOutput final
{
public:
    // Where the system has them. A test has its own.
    inline static const QString LEDS = QStringLiteral("/sys/class/leds");
    inline static const QString BACKLIGHTS = QStringLiteral("/sys/class/backlight");

    // folder: that of the output, with its file "brightness".
    explicit SystemOutput(QString folder)
        : m_folder(std::move(folder))
    {
    }

    // The output of that name in the first of the folders that has it.
    [[nodiscard]] static std::optional<SystemOutput> Find(const QString& name, const QStringList& folders);

    // 0 to 100 percent of what it can do; what is not 0 is more than off. False, and a record, when the system does not
    // take it.
    [[nodiscard]] bool Set(double percent) const;

    // None when it cannot be read, or has no range.
    [[nodiscard]] std::optional<double> Get() const;

private:
    [[nodiscard]] std::optional<double> Read(const QString& file) const;

    QString m_folder;
};
