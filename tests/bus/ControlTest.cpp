#include "ControlTest.h"

#include "BuiltProgram.h"
#include "Wait.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

QProcessEnvironment ControlTest::Environment()
{
    return Daemon().Environment();
}

ControlTest::Process ControlTest::Launch(const QString& arguments, const QProcessEnvironment& environment)
{
    Process process(new QProcess);
    process->setProcessEnvironment(environment);
    BuiltProgram::Set(*process, u"ozna-schedule"_s, arguments.split(u' '));
    process->start();
    return process;
}

void ControlTest::End::operator()(QProcess* process) const
{
    process->kill();
    static_cast<void>(process->waitForFinished(WAIT_MS));
    delete process;
}

ControlTest::Result ControlTest::Run(const QString& arguments, const QProcessEnvironment& environment)
{
    const Process process = Launch(arguments, environment);
    if (!WaitUntil([&] { return process->state() == QProcess::NotRunning; }) ||
        process->exitStatus() != QProcess::NormalExit)
        return {};
    return {process->exitCode(), QString::fromUtf8(process->readAllStandardOutput()),
            QString::fromUtf8(process->readAllStandardError())};
}

QStringList ControlTest::Shown(QString output) const
{
    static const QRegularExpression since(
        u"; runs since \\w{3} \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\(process \\d+\\)"_s);
    static const QRegularExpression soon(u", in \\d+ s:"_s);
    output.replace(since, u"; runs since THEN"_s).replace(soon, u", in SOON:"_s).replace(DataPath({}), u"DATA"_s);
    return output.split(u'\n', Qt::SkipEmptyParts);
}
