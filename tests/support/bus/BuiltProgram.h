#pragma once

#include <QString>
#include <QStringList>

class QProcess;

// The programs under test. They are those of the build folder; where OZNA_PROGRAMS in the environment names another
// build's folder, those of that one, and where they are for another processor OZNA_EMULATOR is the program that runs
// them, each as one process.
namespace BuiltProgram
{

// name: below the build folder, "tests/ozna-scheduler-faulty".
[[nodiscard]] QString Path(const QString& name);

// Sets what the process will run.
void Set(QProcess& process, const QString& name, const QStringList& arguments = {});

} // namespace BuiltProgram
