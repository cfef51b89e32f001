#include "LineEnds.h"
#include "PlaylistReading.h"
#include "Rules.h"

#include "text/TextFile.h"

#include <QSet>

using namespace ScheduleFields;

namespace
{

constexpr QChar TRACK_SEPARATOR = u';';

using LineKind = PlaylistReading::LineKind;

// A comment, or nothing: as it is meant.
bool IsMeantForNobody(const QString& text)
{
    return TextFile::IsBlankOrComment(text) &&
           !text.left(text.indexOf(TextFile::COMMENT_SIGN)).contains(TRACK_SEPARATOR);
}

QString AdviseTrack(const PlaylistReading::Line& line)
{
    if (line.kind == LineKind::BROKEN)
        return QStringLiteral("write ; and the duration in seconds behind the file name");
    if (TextFile::IsBlankOrComment(line.text))
        return QStringLiteral("take the \"#\" out, which makes the whole line a comment");
    return QStringLiteral("put a blank at its beginning: lines of 9 characters or fewer do not count");
}

void LookAt(const PlaylistReading::Line& line, const Entry& entry, Findings& findings)
{
    const QString where = QStringLiteral("line %1 of playlist \"%2\"").arg(line.number).arg(entry.parameters[0]);
    const QString field = Entry::FieldName(FIELD_PARAMETERS);
    const auto addEnd = [&](FindingKind kind, const char* text, const char* advice) {
        findings.Add({entry.line.number, kind, field, where + u' ' + QLatin1String(text), QString::fromLatin1(advice)});
    };
    if (line.hasLoneReturn)
        addEnd(FindingKind::CARRIAGE_RETURN, LineEnds::LONE_RETURN, LineEnds::LONE_RETURN_ADVICE);
    if (!line.hasLineEnd)
        addEnd(FindingKind::NO_LINE_END, LineEnds::NONE, LineEnds::NONE_ADVICE);
    if (line.kind != LineKind::TRACK)
    {
        if (!IsMeantForNobody(line.text))
            findings.Add({entry.line.number, FindingKind::PLAYLIST_LINE, field,
                          QStringLiteral("%1 is no track: \"%2\"").arg(where, line.text), AdviseTrack(line)});
    }
    else if (line.duration_s <= 0)
        findings.Add({entry.line.number, FindingKind::PLAYLIST_DURATION, field,
                      QStringLiteral("%1 counts as lasting %2 s: \"%3\"")
                          .arg(where, QString::number(line.duration_s), line.text),
                      QStringLiteral("write the duration in whole seconds behind the ;, and nothing else")});
}

} // namespace

void Rules::FindOddPlaylists(const std::vector<Entry>& entries, Findings& findings)
{
    QSet<QString> seen;
    for (const Entry& entry : entries)
    {
        if (!entry.Is(TASK_PLAY_PLAYLIST) || seen.contains(entry.parameters[0]))
            continue;
        seen.insert(entry.parameters[0]);
        const PlaylistReading reading(entry.parameters[0]);
        for (const PlaylistReading::Line& line : reading.Lines())
            LookAt(line, entry, findings);
    }
}
