#pragma once

#include "BusTest.h"

#include <QProcess>
#include <QStringList>

#include <memory>

// What a test of the commands that steer the daemon stands on: the tool, run as its user runs it beside the daemon,
// with the daemon's clock and the data folder of the test.
class ControlTest : public BusTest
{
    Q_OBJECT
protected:
    struct Result
    {
        int status = -1;
        QString output;
        QString errors;
    };

    // Runs the tool to its end, while the test's own services answer. arguments: separated by blanks. A command that
    // has --data gets it with Data().
    [[nodiscard]] Result Run(const QString& arguments, const QProcessEnvironment& environment);
    [[nodiscard]] Result Run(const QString& arguments) { return Run(arguments, Environment()); }

    struct End
    {
        void operator()(QProcess* process) const;
    };
    using Process = std::unique_ptr<QProcess, End>;

    // Starts the tool; it ends with the object.
    [[nodiscard]] Process Launch(const QString& arguments, const QProcessEnvironment& environment);

    // " --data FOLDER", of the test's own.
    [[nodiscard]] QString Data() const { return QStringLiteral(" --data ") + DataPath({}); }

    [[nodiscard]] QProcessEnvironment Environment();

    // The output's lines, without what differs from run to run.
    [[nodiscard]] QStringList Shown(QString output) const;
};
