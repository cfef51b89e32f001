#include "LineText.h"
#include "StandInPlaylists.h"
#include "base/CommandLine.h"
#include "base/ExitStatus.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "check/RejectedText.h"
#include "commands/Commands.h"
#include "engine/ScheduleStream.h"
#include "text/ScheduleFields.h"
#include "text/StringUtils.h"
#include "text/TextFile.h"

#include <QFileInfo>
#include <QTemporaryFile>

namespace
{

const QString PLAYLISTS = QStringLiteral("playlists");

[[noreturn]] void FailToRead(const QString& name, const QString& reason)
{
    throw ToolError(QStringLiteral("%1: %2").arg(name, reason));
}

// By way of a file, so that encoding and ends of lines are those of a schedule's file.
QStringList ReadLines(const QString& name)
{
    const QByteArray content = ScheduleStream::Read(name);
    QTemporaryFile file;
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        FailToRead(name, file.errorString());
    TextFile schedule(file.fileName());
    if (!schedule.Open())
        FailToRead(name, QStringLiteral("%1: cannot be opened").arg(file.fileName()));
    QStringList lines;
    QString text;
    while (schedule.ReadLine(text))
        lines.append(text);
    if (!schedule.ReadError().isEmpty())
        FailToRead(name, schedule.ReadError());
    return lines;
}

// Who gives a schedule means its lines.
void CheckIsLine(const QString& operand)
{
    if (!operand.contains(QLatin1Char(ScheduleFields::FIELD_SEPARATOR)) && QFileInfo(operand).isFile())
        FailToRead(operand,
                   QStringLiteral("is a file, and no line; ozna-schedule explain - < FILE explains its lines"));
}

QStringList Texts(const QStringList& operands)
{
    QStringList texts;
    for (const QString& operand : operands)
        CheckIsLine(operand);
    for (const QString& operand : operands)
        texts += ScheduleStream::Is(operand) ? ReadLines(operand) : QStringList(operand);
    return texts;
}

} // namespace

int Commands::Explain(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("explain"),
                     QStringLiteral("Says in words what a line of a schedule asks for, or why the daemon leaves it\n"
                                    "out. Quote the line; the line - stands for all lines of standard input, and\n"
                                    "a pipe for all of its lines."),
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
        ScheduleLine read = playlists.Read(text, ++number);
        if (!read.IsRejected())
        {
            Terminal::Print(LineText::Of(playlists.GetWorkspace(), read, playlists.AreTracksKnown()) + u'\n');
            continue;
        }
        status = ExitStatus::ERRORS;
        Terminal::PrintError(
            QStringLiteral("line %1: error: %2\n")
                .arg(QString::number(number), StringUtils::Harmless(playlists.Readable(RejectedText::Of(read)))));
    }
    return status;
}
