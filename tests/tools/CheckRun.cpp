#include "CheckRun.h"

#include <QProcess>

#include <stdexcept>

namespace
{

constexpr int DEADLINE_MS = 30000;
const QString FOLDER = QStringLiteral(OZNA_CHECK_DATA);

} // namespace

CheckRun::CheckRun(const QStringList& arguments, const QString& folder)
{
    QProcess process;
    process.setWorkingDirectory(folder.isEmpty() ? FOLDER : FOLDER + u'/' + folder);
    process.start(QStringLiteral(OZNA_TOOL), QStringList(QStringLiteral("check")) + arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(DEADLINE_MS) || process.exitStatus() != QProcess::NormalExit)
        throw std::runtime_error("the check does not end: " + process.errorString().toStdString());
    status = process.exitCode();
    output = process.readAllStandardOutput();
    errors = process.readAllStandardError();
}

QStringList CheckRun::Lines() const
{
    return QString::fromUtf8(output).split(u'\n', Qt::SkipEmptyParts);
}

QString CheckRun::DataFolder()
{
    return FOLDER;
}

QStringList CheckRun::Fixed()
{
    return {QStringLiteral("--today"),     QStringLiteral("2024-05-15"),  QStringLiteral("--tz"),
            QStringLiteral("Europe/Rome"), QStringLiteral("--playlists"), QStringLiteral("../playlists")};
}
