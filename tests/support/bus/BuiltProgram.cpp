#include "BuiltProgram.h"

#include <QProcess>

using namespace Qt::StringLiterals;

QString BuiltProgram::Path(const QString& name)
{
    return qEnvironmentVariable("OZNA_PROGRAMS", QStringLiteral(OZNA_BUILD_DIR)) + u'/' + name;
}

void BuiltProgram::Set(QProcess& process, const QString& name, const QStringList& arguments)
{
    const QString emulator = qEnvironmentVariable("OZNA_EMULATOR");
    process.setProgram(emulator.isEmpty() ? Path(name) : emulator);
    process.setArguments(emulator.isEmpty() ? arguments : QStringList(Path(name)) + arguments);
}
