#include "LineText.h"
#include "StandInPlaylists.h"
#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "text/TextFile.h"

#include <QFile>
#include <QTemporaryFile>

#include <cstdio>

namespace
{

const QString STANDARD_INPUT = QStringLiteral("-");
const QString PLAYLISTS = QStringLiteral("playlists");

[[noreturn]] void FailToRead(const QString& reason)
{
    throw ToolError(QStringLiteral("standard input: %1").arg(reason));
}

// By way of a file, so that encoding and ends of lines are those of a schedule's file.
QStringList ReadStandardInput()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        FailToRead(input.errorString());
    const QByteArray content = input.readAll();
    if (input.error() != QFileDevice::NoError)
        FailToRead(input.errorString());
    QTemporaryFile file;
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        FailToRead(file.errorString());
    TextFile schedule(file.fileName());
    if (!schedule.Open())
        FailToRead(QStringLiteral("%1: cannot be opened").arg(file.fileName()));
    QStringList lines;
    QString text;
    while (schedule.ReadLine(text))
        lines.append(text);
    if (!schedule.ReadError().isEmpty())
        FailToRead(schedule.ReadError());
    return lines;
}

QStringList Texts(const QStringList& operands)
{
    QStringList texts;
    for (const QString& operand : operands)
        texts += operand == STANDARD_INPUT ? ReadStandardInput() : QStringList(operand);
    return texts;
}

} // namespace

int Commands::Explain(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("explain"),
                     QStringLiteral("Says in words what a line of a schedule asks for, or why the daemon leaves it\n"
                                    "out. Quote the line; the line - stands for all lines of standard input."),
                     {QStringLiteral("LINE...")});
    line.AddValue(PLAYLISTS, QStringLiteral("DIR"),
                  QStringLiteral("folder of the playlists (default: every playlist\nis taken to exist)"));
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;

    StandInPlaylists playlists(line.Value(PLAYLISTS));
    int number = 0;
    int status = ExitStatus::CLEAN;
    for (const QString& text : Texts(line.Operands()))
    {
        const ScheduleLine read = playlists.Read(text, ++number);
        if (!read.IsRejected())
        {
            Terminal::Print(LineText::Of(playlists.GetWorkspace(), read, playlists.AreTracksKnown()) + u'\n');
            continue;
        }
        status = ExitStatus::ERRORS;
        Terminal::PrintError(QStringLiteral("line %1: error: %2: the daemon leaves the line out\n")
                                 .arg(number)
                                 .arg(Terminal::Harmless(read.rejected->reason)));
    }
    return status;
}
