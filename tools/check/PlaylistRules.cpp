#include "LineEnds.h"
#include "Rules.h"

#include "engine/Workspace.h"
#include "tasks/PlayPlaylist.h"
#include "text/PlaylistFile.h"
#include "text/TextFile.h"

#include <QSet>

using namespace ScheduleFields;

namespace
{

constexpr QChar TRACK_SEPARATOR = u';';

using LineKind = PlaylistFile::LineKind;

// A comment, or nothing: as it is meant.
bool IsMeantForNobody(const QString& text)
{
    return TextFile::IsBlankOrComment(text) &&
           !text.left(text.indexOf(TextFile::COMMENT_SIGN)).contains(TRACK_SEPARATOR);
}

QString AdviseTrack(const PlaylistFile::Line& line)
{
    if (line.kind == LineKind::BROKEN)
        return QStringLiteral("write ; and the duration in seconds behind the file name");
    if (TextFile::IsBlankOrComment(line.text))
        return QStringLiteral("take the \"#\" out, which makes the whole line a comment");
    return QStringLiteral("put a blank at its beginning: lines of 9 characters or fewer do not count");
}

// file: line is the one that was read last.
void LookAt(const PlaylistFile::Line& line, const TextFile& file, const Entry& entry, Findings& findings)
{
    const QString where = QStringLiteral("line %1 of playlist \"%2\"").arg(file.LineNumber()).arg(entry.parameters[0]);
    const QString field = Entry::FieldName(FIELD_PARAMETERS);
    const auto addEnd = [&](FindingKind kind, const char* text, const char* advice) {
        findings.Add({entry.line.number, kind, field, where + u' ' + QLatin1String(text), QString::fromLatin1(advice)});
    };
    if (file.HasLoneReturn())
        addEnd(FindingKind::CARRIAGE_RETURN, LineEnds::LONE_RETURN, LineEnds::LONE_RETURN_ADVICE);
    if (!file.HasLineEnd())
        addEnd(FindingKind::NO_LINE_END, LineEnds::NONE, LineEnds::NONE_ADVICE);
    if (line.kind != LineKind::TRACK)
    {
        if (!IsMeantForNobody(line.text))
            findings.Add({entry.line.number, FindingKind::PLAYLIST_LINE, field,
                          QStringLiteral("%1 is no track: \"%2\"").arg(where, line.text), AdviseTrack(line)});
    }
    else if (line.track.duration_s <= 0)
        findings.Add({entry.line.number, FindingKind::PLAYLIST_DURATION, field,
                      QStringLiteral("%1 counts as lasting %2 s: \"%3\"")
                          .arg(where, QString::number(line.track.duration_s), line.text),
                      QStringLiteral("write the duration in whole seconds behind the ;, and nothing else")});
}

} // namespace

void Rules::FindOddPlaylists(const Workspace& workspace, const std::vector<Entry>& entries, Findings& findings)
{
    const Workspace::Use use(workspace);
    QSet<QString> seen;
    for (const Entry& entry : entries)
    {
        if (!entry.Is(TASK_PLAY_PLAYLIST) || seen.contains(entry.parameters[0]))
            continue;
        seen.insert(entry.parameters[0]);
        PlaylistFile file(PlayPlaylist::GetPlaylistsPath() + u'/' + entry.parameters[0]);
        if (!file.Open())
            continue; // it has gone since the line was read
        for (PlaylistFile::Line line; file.ReadLine(line);)
            LookAt(line, file.File(), entry, findings);
    }
}
