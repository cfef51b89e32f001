#include "MediaFolder.h"
#include "Rules.h"
#include "Span.h"

#include "base/Moment.h"
#include "engine/Workspace.h"
#include "sound/SoundFile.h"
#include "tasks/PlayPlaylist.h"
#include "text/PlaylistFile.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <map>

using namespace ScheduleFields;

namespace
{

constexpr double TOLERANCE_S = 2; // by which lengths may differ: as long as the pause between two tracks
constexpr int SHORTEST_LINE = 10; // of a playlist, in characters

// Where a sound is named: in an entry, or in a line of its playlist.
struct Use
{
    const Entry* entry;
    QString where;  // the line of the playlist, with a blank behind it; empty for an entry's own
    int duration_s; // which the playlist tells; 0: none
};

class Media final
{
public:
    Media(MediaFolder& folder, Findings& findings)
        : m_folder(folder)
        , m_findings(findings)
    {
    }

    void Add(const QString& name, const Use& use)
    {
        std::vector<Use>& uses = m_uses[name];
        if (uses.empty())
            m_names.append(name);
        uses.push_back(use);
    }

    // Tells what is wrong with the sounds. Gives the lengths of those that can be read, by their names.
    QHash<QString, double> Look()
    {
        QHash<QString, double> lengths;
        for (const QString& name : std::as_const(m_names))
        {
            const double length_s = LengthOf(name);
            if (length_s > 0)
                lengths.insert(name, length_s);
        }
        return lengths;
    }

private:
    double LengthOf(const QString& name)
    {
        const MediaFolder::Place place = m_folder.Find(name);
        if (!place.instead.isEmpty())
            Tell(name, FindingKind::MEDIA_CASE, QStringLiteral("is not there, but \"%1\" is").arg(place.instead),
                 QStringLiteral("write %1, with the same capital letters").arg(place.instead));
        else if (place.path.isEmpty())
            Tell(name, FindingKind::MEDIA_MISSING, QStringLiteral("is not in %1").arg(m_folder.Path()),
                 place.similar.isEmpty()
                     ? QStringLiteral("bring the file there, or write the name of one that is there")
                     : QStringLiteral("write %1, which is there").arg(place.similar));
        if (place.path.isEmpty())
            return 0;
        const SoundFile sound = SoundFile::Read(place.path);
        if (!sound.error.isEmpty())
            Tell(name, FindingKind::MEDIA_UNREADABLE, QStringLiteral("is no sound: %1").arg(sound.error),
                 QStringLiteral("replace the file by a sound that can be played"));
        else
            CompareLengths(name, sound.length_s);
        return sound.length_s;
    }

    // One finding, however often the name comes: the file is one.
    void Tell(const QString& name, FindingKind kind, const QString& text, const QString& advice)
    {
        const std::vector<Use>& uses = m_uses[name];
        QStringList others;
        for (const Use& use : uses)
        {
            const QString line = QString::number(use.entry->line.number);
            if (use.entry != uses.front().entry && !others.contains(line))
                others.append(line);
        }
        Add(uses.front(), kind,
            QStringLiteral("\"%1\" %2%3")
                .arg(name, text,
                     others.isEmpty() ? QString()
                                      : QStringLiteral(" (named by line%1 %2 too)")
                                            .arg(others.size() > 1 ? QStringLiteral("s") : QString(),
                                                 others.join(QStringLiteral(", ")))),
            advice);
    }

    void CompareLengths(const QString& name, double length_s)
    {
        for (const Use& use : m_uses[name])
        {
            if (use.duration_s <= 0 || std::abs(use.duration_s - length_s) <= TOLERANCE_S)
                continue;
            QString seconds = QString::number(std::max(std::lround(length_s), 1L));
            const QString given = QString::number(use.duration_s);
            Add(use, FindingKind::MEDIA_LENGTH,
                QStringLiteral("\"%1\" lasts %2 s, and not %3 s").arg(name, seconds, given),
                QStringLiteral("write %1;%2").arg(name, seconds.rightJustified(SHORTEST_LINE - 1 - name.size(), u'0')));
        }
    }

    void Add(const Use& use, FindingKind kind, const QString& text, const QString& advice)
    {
        m_findings.Add({use.entry->line.number, kind, Entry::FieldName(FIELD_PARAMETERS), use.where + text, advice});
    }

    MediaFolder& m_folder;
    Findings& m_findings;
    QStringList m_names; // in the order in which they come
    QHash<QString, std::vector<Use>> m_uses;
};

void AddTracks(const Entry& entry, Media& media)
{
    const QString& playlist = entry.parameters[0];
    PlaylistFile file(PlayPlaylist::GetPlaylistsPath() + u'/' + playlist);
    if (!file.Open())
        return; // it has gone since the line was read
    for (PlaylistFile::Line line; file.ReadLine(line);)
    {
        if (line.kind == PlaylistFile::LineKind::TRACK)
            media.Add(line.track.file,
                      {&entry,
                       QStringLiteral("line %1 of playlist \"%2\": ").arg(file.File().LineNumber()).arg(playlist),
                       line.track.duration_s});
    }
}

// Messages that begin before an earlier one has ended. Those of one second are told without their lengths.
void FindMeetings(const std::vector<Entry>& entries, const QHash<QString, double>& lengths, const QDate& today,
                  Findings& findings)
{
    YearDays days(today);
    std::vector<Span> messages;
    std::multimap<int, YearDays::Bits> stops;
    for (const Entry& entry : entries)
    {
        if (!Startable::Is(entry))
            continue;
        const int second = Startable::Second(entry);
        if (entry.Is(TASK_STOP_MESSAGE))
            stops.emplace(second, days.Of(*entry.GetAction()));
        else if (entry.Is(TASK_PLAY_MESSAGE))
            messages.push_back({{&entry, second, days.Of(*entry.GetAction())},
                                static_cast<qint64>(std::ceil(lengths.value(entry.parameters.value(0))))});
    }
    Span::ForMeetings(messages, [&](const Span::Meeting& meeting) {
        YearDays::Bits left = meeting.days;
        const int begin = meeting.first.second;
        const auto end = stops.upper_bound(begin + meeting.ahead_s);
        for (auto stop = stops.upper_bound(begin); stop != end; ++stop)
            left &= ~stop->second;
        if (meeting.ahead_s == 0 || left.none())
            return false;
        const QString until = Startable::TimeText(static_cast<int>((begin + meeting.first.length_s) % Moment::DAY_S));
        findings.Add(
            {meeting.second.entry->line.number, FindingKind::TWO_MESSAGES, Entry::FieldName(FIELD_START_TIME),
             QStringLiteral("\"%1\" of line %2 plays until %3, first on %4: both are asked for, and the player "
                            "decides what is heard")
                 .arg(meeting.first.entry->parameters.value(0), QString::number(meeting.first.entry->line.number),
                      until, Startable::FirstDay(left, today)),
             QStringLiteral("write a time from %1 on").arg(until)});
        return true;
    });
}

} // namespace

void Rules::FindOddMedia(const Workspace& workspace, MediaFolder& folder, const std::vector<Entry>& entries,
                         const QDate& today, Findings& findings)
{
    const Workspace::Use use(workspace);
    Media media(folder, findings);
    QSet<QString> playlists;
    for (const Entry& entry : entries)
    {
        const QString name = entry.parameters.value(0);
        if (entry.Is(TASK_PLAY_MESSAGE) && !name.isEmpty())
            media.Add(name, {&entry, {}, 0});
        if (entry.Is(TASK_PLAY_PLAYLIST) && !playlists.contains(name))
        {
            playlists.insert(name);
            AddTracks(entry, media);
        }
    }
    FindMeetings(entries, media.Look(), today, findings);
}
