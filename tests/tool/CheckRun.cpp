#include "CheckRun.h"

#include "CommandCall.h"

namespace
{

const QString FOLDER = QStringLiteral(OZNA_SOURCES "/tests/data/check");

} // namespace

CheckRun::CheckRun(const QStringList& arguments, const QString& folder)
{
    const CommandCall call(folder.isEmpty() ? FOLDER : FOLDER + u'/' + folder);
    const CommandCall::Result result = call.Run(QStringList(QStringLiteral("check")) + arguments);
    status = result.status;
    output = result.output.toUtf8();
    errors = result.errors.toUtf8();
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
