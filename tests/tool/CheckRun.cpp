#include "CheckRun.h"

#include "CommandCall.h"

using namespace Qt::StringLiterals;

namespace
{

const QString FOLDER = QStringLiteral(OZNA_SOURCES "/tests/data/check");

} // namespace

CheckRun::CheckRun(const QStringList& arguments, const QString& folder)
{
    const CommandCall call(folder.isEmpty() ? FOLDER : FOLDER + u'/' + folder);
    const CommandCall::Result result = call.Run(QStringList(u"check"_s) + arguments);
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

QString CheckRun::MistakeFile(const char* name)
{
    return QStringLiteral(OZNA_SOURCES "/tests/data/mistakes/") + QLatin1String(name);
}

QStringList CheckRun::Fixed()
{
    return {u"--today"_s, u"2024-05-15"_s, u"--tz"_s, u"Europe/Rome"_s, u"--playlists"_s, u"../playlists"_s};
}
