#include "ControlOptions.h"

#include "DataRoot.h"
#include "text/StringUtils.h"

#include <QDir>
#include <QJsonDocument>

namespace
{

const QString DATA = QStringLiteral("data");
const QString JSON = QStringLiteral("json");
const QString SCHEDULES = QStringLiteral("/schedule/"); // in the daemon's data folder

} // namespace

void ControlOptions::AddJson(CommandLine& line)
{
    line.AddFlag(JSON, QStringLiteral("for machines: one object"));
}

void ControlOptions::AddData(CommandLine& line)
{
    const QString folder = QString::fromLatin1(DEVICE_DATA_ROOT);
    line.AddValue(DATA, QStringLiteral("DIR"), QStringLiteral("the daemon's data folder (default:\n%1)").arg(folder),
                  folder);
}

bool ControlOptions::WantsJson(const CommandLine& line)
{
    return line.Has(JSON);
}

QString ControlOptions::DataFolder(const CommandLine& line)
{
    return QDir::cleanPath(line.Value(DATA));
}

QString ControlOptions::SchedulePath(const CommandLine& line, const QString& fileName)
{
    return DataFolder(line) + SCHEDULES + fileName;
}

QString ControlOptions::StateText(const CommandLine& line, const SchedulerLink::State& state, const QJsonObject& file)
{
    if (!WantsJson(line))
        return StateWords(state) + u'\n';
    QJsonObject object = file;
    object.insert(QStringLiteral("enabled"), state.isEnabled);
    object.insert(QStringLiteral("file"), state.fileName);
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
}

QString ControlOptions::StateWords(const SchedulerLink::State& state)
{
    return QStringLiteral("%1, %2").arg(state.isEnabled ? QStringLiteral("enabled") : QStringLiteral("disabled"),
                                        StringUtils::Harmless(state.fileName));
}
