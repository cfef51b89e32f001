#include "Rules.h"

#include "TaskTable.h"
#include "meant/Meant.h"
#include "meant/Strokes.h"
#include "text/TextFile.h"
#include "words/ParameterNames.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>

using namespace ScheduleFields;

namespace
{

using Cause = Rejection::Cause;

// What a playlist's name may be away from the one that is meant.
constexpr int MOST_STROKES = 2;
constexpr qsizetype LETTERS_A_STROKE = 3;

constexpr QChar ENDING = u'.';

const QRegularExpression SEMICOLON(QStringLiteral("\\s*;\\s*"));

// What is told of a rejection, in other words than the daemon's.
struct Told
{
    QString text;
    QString advice;
    std::optional<QString> suggestion = {};
};

// What to tell of a rejection with that cause.
struct Row
{
    Cause cause;
    FindingKind kind;
    Field field;
    Told (*tell)(const Entry& entry);
};

Told TellFields(const Entry& entry)
{
    const QString text = QStringLiteral("has %1 of the 8 fields that a line needs").arg(entry.fieldCount);
    if (entry.line.text.trimmed().endsWith(TextFile::COMMENT_SIGN))
        return {text, QStringLiteral("put text behind the \"#\" for a comment, or leave the line empty"), QString()};
    return {text,
            QStringLiteral("write days|start time|day|month|year|from|to|task, and |parameters where there are any")};
}

Told TellTime(const Entry& entry)
{
    const QString given = entry.Field(FIELD_START_TIME);
    const QString meant = Meant::Time(given);
    const QString text = QStringLiteral("\"%1\" is not written hh:mm:ss").arg(given);
    if (meant.isEmpty())
        return {text, QStringLiteral("write hh:mm:ss, as 08:30:00")};
    return {text, QStringLiteral("write ") + meant, entry.With(FIELD_START_TIME, meant)};
}

Told TellTask(const Entry& entry)
{
    const QString name = entry.Field(FIELD_TASK);
    const TaskKind* const known = TaskTable::Find(Task::NameToType(name));
    if (known != nullptr && known->create == nullptr)
        return {QStringLiteral("nothing serves %1").arg(QLatin1String(known->logName)),
                QStringLiteral("leave the line out")};
    if (name.isEmpty())
        return {QStringLiteral("no task is named"),
                QStringLiteral("write a name or a number of the table of tasks in ozna-schedule(5)")};
    const QString text = QStringLiteral("no task is called \"%1\"").arg(name);
    const QString behind = Meant::TaskAndParameters(name);
    if (!behind.isEmpty() && entry.fieldCount == FIELD_PARAMETERS)
        return {text, QStringLiteral("write \"|\" between the task and its parameters: ") + behind,
                entry.With(FIELD_TASK, behind)};
    const QString meant = Meant::Task(name);
    if (!meant.isEmpty())
        return {text,
                meant[0].isDigit() ? QStringLiteral("write its number, ") + meant
                                   : QStringLiteral("did you mean %1? Write it to the letter").arg(meant),
                entry.With(FIELD_TASK, meant)};
    return {text, QStringLiteral("write a name or a number of the table of tasks in ozna-schedule(5)")};
}

Told TellParameters(const Entry& entry)
{
    const TaskKind* const kind = TaskTable::Find(Task::NameToType(entry.Field(FIELD_TASK)));
    const bool isExact = kind->minParameters == kind->maxParameters;
    const QString advice =
        QStringLiteral("write %1 %2 behind the task's \"|\"")
            .arg(isExact ? QStringLiteral("exactly") : QStringLiteral("at least"),
                 kind->minParameters == 1
                     ? QStringLiteral("1 parameter")
                     : QStringLiteral("%1 parameters, separated by \",\",").arg(kind->minParameters));
    const auto given = static_cast<int>(entry.parameters.size());
    if (given > kind->maxParameters)
        return {QStringLiteral("\"%1\" is a parameter too many for %2")
                    .arg(entry.parameters.mid(kind->maxParameters).join(QLatin1Char(PARAMETER_SEPARATOR)),
                         entry.TaskName()),
                advice};
    return {QStringLiteral("%1 lacks a parameter: %2").arg(entry.TaskName(), ParameterNames::Of(kind->type, given)),
            advice};
}

// The playlists that are where missing is not, and can be read.
QStringList Playlists(const QFileInfo& missing)
{
    return missing.dir().entryList(QDir::Files | QDir::Readable, QDir::Name);
}

// The one of them that differs in letter case alone; empty where there is none.
QString Alike(const QFileInfo& missing)
{
    const QStringList names = Playlists(missing);
    const auto alike = std::ranges::find_if(names, [&](const QString& name) {
        return name != missing.fileName() && name.compare(missing.fileName(), Qt::CaseInsensitive) == 0;
    });
    return alike != names.end() ? *alike : QString();
}

// The one that differs by an ending or by a letter or two; empty where there is none, or several are as near.
QString Near(const QFileInfo& missing)
{
    const QString given = missing.fileName().toLower();
    // Of short names most are a few strokes away from each other.
    int least = static_cast<int>(std::min<qsizetype>(MOST_STROKES, given.size() / LETTERS_A_STROKE)) + 1;
    QString nearest;
    bool isOne = true;
    for (const QString& name : Playlists(missing))
    {
        const QString other = name.toLower();
        const bool isOtherEnding = other.startsWith(given + ENDING) || given.startsWith(other + ENDING);
        const int strokes = isOtherEnding ? 0 : Strokes::Between(given, other);
        if (name == missing.fileName() || strokes > least || (strokes == least && nearest.isEmpty()))
            continue;
        isOne = strokes < least;
        least = strokes;
        nearest = name;
    }
    return isOne ? nearest : QString();
}

Told TellPlaylist(const Entry& entry)
{
    const QString name = entry.parameters.value(0);
    if (name.isEmpty())
        return {QStringLiteral("no playlist is named"), QStringLiteral("write the playlist's file name first")};
    const QString text =
        QStringLiteral("the playlist \"%1\" cannot be opened: %2").arg(name, entry.line.rejected->file);
    if (name.contains(u';'))
    {
        const QString meant = QString(name).replace(SEMICOLON, QStringLiteral(","));
        return {text, QStringLiteral("write ") + meant, entry.WithParameter(0, meant)};
    }
    const QFileInfo missing(entry.line.rejected->file);
    if (const QString alike = Alike(missing); !alike.isEmpty())
        return {text, QStringLiteral("write %1, with the same capital letters").arg(alike),
                entry.WithParameter(0, alike)};
    if (const QString near = Near(missing); !near.isEmpty())
        return {text, QStringLiteral("did you mean %1? Write the name to the letter").arg(near),
                entry.WithParameter(0, near)};
    const QString advice = QStringLiteral("write the name of a readable file of that folder, or bring the file there");
    const QStringList& folders = entry.line.rejected->missingFolders;
    return {text, folders.isEmpty()
                      ? advice
                      : advice + QStringLiteral(", or tell its folder by --playlists: there is no folder %1")
                                     .arg(folders.join(QStringLiteral(" or ")))};
}

Told TellEmpty(const Entry& entry)
{
    return {QStringLiteral("the playlist \"%1\" has no track").arg(entry.parameters.value(0)),
            QStringLiteral("write a track into it, as \"intro.mp3;60\", with more than 9 characters")};
}

constexpr std::array TABLE{
    Row{Cause::FIELD_COUNT, FindingKind::FIELD_COUNT, FIELD_COUNT, TellFields},
    Row{Cause::START_TIME, FindingKind::TIME_PARTS, FIELD_START_TIME, TellTime},
    Row{Cause::TASK, FindingKind::UNKNOWN_TASK, FIELD_TASK, TellTask},
    Row{Cause::PARAMETERS, FindingKind::WRONG_PARAMETERS, FIELD_PARAMETERS, TellParameters},
    Row{Cause::PLAYLIST_FILE, FindingKind::PLAYLIST_MISSING, FIELD_PARAMETERS, TellPlaylist},
    Row{Cause::PLAYLIST_EMPTY, FindingKind::PLAYLIST_EMPTY, FIELD_PARAMETERS, TellEmpty},
};

constexpr bool IsIndexedByCause()
{
    for (size_t i = 0; i < TABLE.size(); ++i)
    {
        if (TABLE[i].cause != static_cast<Cause>(i))
            return false;
    }
    return true;
}

static_assert(IsIndexedByCause(), "a row stands at the place of its cause");

} // namespace

Finding Rules::RejectionOf(const Entry& entry)
{
    const Row& row = TABLE.at(static_cast<size_t>(entry.line.rejected->cause));
    const Told told = row.tell(entry);
    Finding finding{entry.line.number, row.kind, Entry::FieldName(row.field), told.text, told.advice};
    finding.suggestion = told.suggestion;
    finding.logged = entry.line.rejected->reason;
    return finding;
}

void Rules::FindRejected(const std::vector<Entry>& entries, Findings& findings)
{
    for (const Entry& entry : entries)
    {
        if (entry.line.IsRejected())
            findings.Add(RejectionOf(entry));
    }
}
