#include "PlaylistReading.h"
#include "Rules.h"

#include "TaskTable.h"
#include "engine/Workspace.h"
#include "text/TextFile.h"

#include <algorithm>
#include <array>

using namespace ScheduleFields;

namespace
{

// What to tell of a rejection whose reason begins so.
struct Row
{
    const char* reason;
    FindingKind kind;
    Field field;
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

QString AdvisePlaylist(const Entry& entry)
{
    if (entry.parameters.value(0).isEmpty())
        return QStringLiteral("write the playlist's file name first");
    return QStringLiteral("write the name of a readable file of that folder, or bring the file there");
}

QString AdviseEmpty(const Entry&)
{
    return QStringLiteral("write a track into it, as \"intro.mp3;60\", with more than 9 characters");
}

constexpr std::array TABLE{
    Row{"Wrong action fields", FindingKind::FIELD_COUNT, FIELD_COUNT, AdviseFields},
    Row{"Wrong action start time", FindingKind::TIME_PARTS, FIELD_START_TIME, AdviseTime},
    Row{"Unknown task", FindingKind::UNKNOWN_TASK, FIELD_TASK, AdviseTask},
    Row{"Wrong task parameters", FindingKind::WRONG_PARAMETERS, FIELD_PARAMETERS, AdviseParameters},
    Row{"Playlist", FindingKind::PLAYLIST_MISSING, FIELD_PARAMETERS, AdvisePlaylist},
    Row{"TASK CREATION FAILED", FindingKind::PLAYLIST_EMPTY, FIELD_PARAMETERS, AdviseEmpty},
    Row{"", FindingKind::UNKNOWN_TASK, FIELD_TASK, AdviseTask},
};

} // namespace

void Rules::FindRejected(const std::vector<Entry>& entries, Findings& findings)
{
    for (const Entry& entry : entries)
    {
        if (!entry.line.IsRejected())
            continue;
        QString reason = entry.line.Rejection();
        const Row& row = *std::ranges::find_if(
            TABLE, [&](const Row& each) { return reason.startsWith(QLatin1String(each.reason)); });
        if (row.kind == FindingKind::PLAYLIST_EMPTY)
            reason = PlaylistReading(entry.parameters.value(0)).Rejection();
        reason = Workspace::Readable(reason);
        findings.Add({entry.line.number, row.kind, Entry::FieldName(row.field), reason, row.advise(entry)});
    }
}
