#pragma once

#include <QByteArray>
#include <QStringList>

// One run of the tool's check, in the folder of a test's data: findings name files as they were given.
struct CheckRun
{
    // arguments: those of the check. folder: below the tests' data of checks. Throws std::runtime_error when the
    // program does not run to its end.
    explicit CheckRun(const QStringList& arguments, const QString& folder = {});

    [[nodiscard]] QStringList Lines() const;

    int status = 0;
    QByteArray output;
    QByteArray errors;

    // The folder of that data.
    [[nodiscard]] static QString DataFolder();

    // A table of mistakes; see MistakeTable.
    [[nodiscard]] static QString MistakeFile(const char* name);

    // What makes a check tell the same on every day, on every machine.
    [[nodiscard]] static QStringList Fixed();
};
