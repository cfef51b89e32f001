#include "Rules.h"

#include "TaskTable.h"
#include "text/TextFile.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace ScheduleFields;

namespace
{

using Cause = Rejection::Cause;

const QRegularExpression SEMICOLON(QStringLiteral("\\s*;\\s*"));

// What to tell of a rejection with that cause.
struct Row
{
    Cause cause;
    FindingKind kind;
    Field field;
    const char* text; // null: the daemon's own words
    QString (*advise)(const Entry& entry);
};

QString AdviseFields(const Entry& entry)
{
    if (entry.line.text.trimmed().endsWith(TextFile::COMMENT_SIGN))
        return QStringLiteral("put text behind the \"#\" for a comment, or leave the line empty");
    return QStringLiteral("write days|start time|day|month|year|from|to|task, and |parameters where there are any");
}

QString AdviseTime(const Entry&)
{
    return QStringLiteral("write hh:mm:ss, as 08:30:00");
}

QString AdviseTask(const Entry& entry)
{
    const QString name = entry.Field(FIELD_TASK);
    const TaskKind* const known = TaskTable::Find(Task::NameToType(name));
    if (known != nullptr && known->create == nullptr)
        return QStringLiteral("leave the line out: nothing serves %1").arg(QLatin1String(known->logName));
    const TaskKind* kind = TaskTable::Find(static_cast<TaskType>(0));
    for (int type = 0; kind != nullptr; kind = TaskTable::Find(static_cast<TaskType>(++type)))
    {
        for (const char* text : {kind->scheduleName, kind->logName})
        {
            if (text == nullptr || name.compare(QLatin1String(text), Qt::CaseInsensitive) != 0)
                continue;
            return kind->scheduleName != nullptr
                       ? QStringLiteral("write %1, to the letter").arg(QLatin1String(kind->scheduleName))
                       : QStringLiteral("write its number, %1").arg(type);
        }
    }
    return QStringLiteral("write a name or a number of the table of tasks in ozna-schedule(5)");
}

QString AdviseParameters(const Entry& entry)
{
    if (entry.fieldCount > FIELD_COUNT)
        return QStringLiteral("take out the \"|\" behind the task's parameters, which ends them all");
    const TaskKind* const kind = TaskTable::Find(Task::NameToType(entry.Field(FIELD_TASK)));
    const bool isExact = kind->minParameters == kind->maxParameters;
    return QStringLiteral("write %1 %2 behind the task's \"|\"")
        .arg(isExact ? QStringLiteral("exactly") : QStringLiteral("at least"),
             kind->minParameters == 1 ? QStringLiteral("1 parameter")
                                      : QStringLiteral("%1 parameters, separated by \",\",").arg(kind->minParameters));
}

// The playlist of that folder that differs in letter case alone; empty where there is none.
QString Alike(const QString& path)
{
    const QFileInfo missing(path);
    for (const QString& name : missing.dir().entryList(QDir::Files))
    {
        if (name.compare(missing.fileName(), Qt::CaseInsensitive) == 0)
            return name;
    }
    return {};
}

QString AdvisePlaylist(const Entry& entry)
{
    const QString name = entry.parameters.value(0);
    if (name.isEmpty())
        return QStringLiteral("write the playlist's file name first");
    if (name.contains(u';'))
        return QStringLiteral("write %1").arg(QString(name).replace(SEMICOLON, QStringLiteral(",")));
    if (const QString alike = Alike(entry.line.rejected->file); !alike.isEmpty() && alike != name)
        return QStringLiteral("write %1, with the same capital letters").arg(alike);
    const QString advice = QStringLiteral("write the name of a readable file of that folder, or bring the file there");
    const QStringList& missing = entry.line.rejected->missingFolders;
    return missing.isEmpty() ? advice
                             : advice + QStringLiteral(", or tell its folder by --playlists: there is no folder %1")
                                            .arg(missing.join(QStringLiteral(" or ")));
}

QString AdviseEmpty(const Entry&)
{
    return QStringLiteral("write a track into it, as \"intro.mp3;60\", with more than 9 characters");
}

constexpr std::array TABLE{
    Row{Cause::FIELD_COUNT, FindingKind::FIELD_COUNT, FIELD_COUNT, nullptr, AdviseFields},
    Row{Cause::START_TIME, FindingKind::TIME_PARTS, FIELD_START_TIME, nullptr, AdviseTime},
    Row{Cause::TASK, FindingKind::UNKNOWN_TASK, FIELD_TASK, nullptr, AdviseTask},
    Row{Cause::PARAMETERS, FindingKind::WRONG_PARAMETERS, FIELD_PARAMETERS, nullptr, AdviseParameters},
    Row{Cause::PLAYLIST_FILE, FindingKind::PLAYLIST_MISSING, FIELD_PARAMETERS, nullptr, AdvisePlaylist},
    Row{Cause::PLAYLIST_EMPTY, FindingKind::PLAYLIST_EMPTY, FIELD_PARAMETERS, "Playlist is empty", AdviseEmpty},
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

void Rules::FindRejected(const std::vector<Entry>& entries, Findings& findings)
{
    for (const Entry& entry : entries)
    {
        if (!entry.line.IsRejected())
            continue;
        const Row& row = TABLE.at(static_cast<size_t>(entry.line.rejected->cause));
        findings.Add({entry.line.number, row.kind, Entry::FieldName(row.field),
                      row.text != nullptr ? QString::fromLatin1(row.text) : entry.line.rejected->reason,
                      row.advise(entry)});
    }
}
