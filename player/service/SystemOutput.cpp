#include "SystemOutput.h"

#include "PlayerLog.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace
{

const QString BRIGHTNESS = QStringLiteral("/brightness");
const QString GREATEST = QStringLiteral("/max_brightness");
constexpr double FULL = 100; // percent

} // namespace

std::optional<SystemOutput> SystemOutput::Find(const QString& name, const QStringList& folders)
{
    for (const QString& folder : folders)
    {
        const QString path = folder + u'/' + name;
        if (QFileInfo::exists(path + BRIGHTNESS))
            return SystemOutput(path);
    }
    return std::nullopt;
}

bool SystemOutput::Set(double percent) const
{
    const std::optional<double> greatest = Read(GREATEST);
    const double share = std::clamp(percent, 0.0, FULL) / FULL;
    // Where the system does not tell its range, an output is on or off.
    const double level = std::round(greatest.value_or(1) * share);
    const QByteArray text = QByteArray::number(static_cast<qint64>(share > 0 ? std::max(level, 1.0) : 0));
    QFile file(m_folder + BRIGHTNESS);
    const bool isSet = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered | QIODevice::ExistingOnly) &&
                       file.write(text) == text.size();
    if (!isSet)
        PLAYER_LOG(LEVEL_ERROR, "%s cannot be set: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    return isSet;
}

std::optional<double> SystemOutput::Get() const
{
    const std::optional<double> greatest = Read(GREATEST);
    const std::optional<double> level = Read(BRIGHTNESS);
    if (!greatest || !level || !(*greatest > 0))
        return std::nullopt;
    return std::clamp(*level / *greatest * FULL, 0.0, FULL);
}

std::optional<double> SystemOutput::Read(const QString& file) const
{
    QFile source(m_folder + file);
    if (!source.open(QIODevice::ReadOnly))
        return std::nullopt;
    bool isNumber = false;
    const double number = source.readAll().trimmed().toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}
