#include "LeftOut.h"
#include "Rules.h"

#include <QHash>
#include <QSet>

#include <algorithm>

using namespace ScheduleFields;

namespace
{

Finding New(const Entry& entry, FindingKind kind, Field field, const QString& text, const QString& advice)
{
    return {entry.line.number, kind, Entry::FieldName(field), text, advice};
}

QString Identifier(const Entry& entry)
{
    return entry.GetAction()->m_task->m_identifier;
}

bool IsRadioOff(const Entry& entry)
{
    return entry.Is(TASK_STOP_RADIO_FM) || (entry.Is(TASK_PLAY_RADIO_FM) && entry.parameters.value(0).toDouble() == 0);
}

// The identifiers of the entries with that task.
QSet<QString> Identifiers(const std::vector<Entry>& entries, TaskType type)
{
    QSet<QString> identifiers;
    for (const Entry& entry : entries)
    {
        if (entry.Is(type))
            identifiers.insert(Identifier(entry));
    }
    return identifiers;
}

// What a stop without a playlist should have. unstopped: the playlists without a stop.
QString AdviseIdentifier(const QString& given, const std::vector<const Entry*>& unstopped)
{
    const auto isLike = [&](const Entry* play) { return Identifier(*play).compare(given, Qt::CaseInsensitive) == 0; };
    const auto isOther = [&](const Entry* play) { return Identifier(*play) != Identifier(*unstopped.front()); };
    auto meant = std::ranges::find_if(unstopped, isLike);
    if (meant == unstopped.end() && std::ranges::none_of(unstopped, isOther))
        meant = unstopped.begin();
    if (meant == unstopped.end())
        return QStringLiteral("write the third parameter of the playlist's line, to the letter");
    return QStringLiteral("write %1, as line %2 has it").arg(Identifier(**meant)).arg((*meant)->line.number);
}

// A playlist needs no stop: it ends with its last track.
void FindOddStops(const std::vector<Entry>& entries, const LeftOut& leftOut, Findings& findings)
{
    const QSet<QString> played = Identifiers(entries, TASK_PLAY_PLAYLIST);
    const QSet<QString> stopped = Identifiers(entries, TASK_STOP_PLAYLIST);
    const bool hasStreamStop = leftOut.HasStop() || std::ranges::any_of(entries, [](const Entry& entry) {
                                   return entry.Is(TASK_STOP_STREAM);
                               });
    const bool hasRadioStop = leftOut.HasStop() || std::ranges::any_of(entries, IsRadioOff);
    const auto isAlone = [&](const Entry& entry, TaskType type, const QSet<QString>& others) {
        const QString identifier = entry.Is(type) ? Identifier(entry) : QString();
        return !identifier.isEmpty() && !others.contains(identifier) && !leftOut.Names(identifier);
    };
    std::vector<const Entry*> unstopped;
    for (const Entry& entry : entries)
    {
        if (isAlone(entry, TASK_PLAY_PLAYLIST, stopped))
            unstopped.push_back(&entry);
    }
    for (const Entry& entry : entries)
    {
        if (isAlone(entry, TASK_STOP_PLAYLIST, played))
            findings.Add(New(entry, FindingKind::UNMATCHED_STOP, FIELD_PARAMETERS,
                             QStringLiteral("no PlayPlaylist has the identifier \"%1\"").arg(Identifier(entry)),
                             AdviseIdentifier(Identifier(entry), unstopped)));
        else if (entry.Is(TASK_PLAY_STREAM) && !hasStreamStop)
            findings.Add(New(entry, FindingKind::NEVER_STOPPED, FIELD_TASK, QStringLiteral("nothing stops the stream"),
                             QStringLiteral("add a StopStream line")));
        else if (entry.Is(TASK_PLAY_RADIO_FM) && !hasRadioStop)
            findings.Add(New(entry, FindingKind::NEVER_STOPPED, FIELD_TASK,
                             QStringLiteral("nothing switches the radio off"),
                             QStringLiteral("add a StopRadioFm line, or PlayRadioFm with 0")));
    }
}

void FindDuplicates(const std::vector<Entry>& entries, Findings& findings)
{
    QHash<QStringList, int> lines;
    for (const Entry& entry : entries)
    {
        // The reason of a rejected line is told for each of them.
        if (entry.GetAction() == nullptr)
            continue;
        const auto earlier = lines.constFind(entry.fields);
        if (earlier == lines.constEnd())
            lines.insert(entry.fields, entry.line.number);
        else
            findings.Add({entry.line.number, FindingKind::DUPLICATE, Entry::FieldName(FIELD_COUNT),
                          QStringLiteral("the same as line %1: both are done").arg(*earlier),
                          QStringLiteral("take one of them out")});
    }
}

} // namespace

void Rules::FindOddPairs(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries, Findings& findings)
{
    FindOddStops(entries, LeftOut(lines, entries), findings);
    FindDuplicates(entries, findings);
}
