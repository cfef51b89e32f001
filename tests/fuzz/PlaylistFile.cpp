#include "Engine.h"
#include "Findings.h"
#include "Reading.h"
#include "Target.h"
#include "tasks/PlayPlaylist.h"

#include <QDebug>

#include <limits>

using namespace Qt::StringLiterals;

// A playlist's file, as its task reads it. Input: the file's content.

namespace
{

constexpr qsizetype LONGEST_IGNORED_LINE = 9;
constexpr std::int64_t GAP_S = 2;
const QString NAME = u"list"_s;

// What the content should come to; exact where it is plain.
struct Tracks
{
    explicit Tracks(const QByteArray& content);

    // The track that a start so late begins with, counted from 1.
    [[nodiscard]] int FirstAfter(int delay_s) const;

    QList<int> durations_s;
    std::int64_t total_s = 0;
};

Tracks::Tracks(const QByteArray& content)
{
    for (const QByteArray& line : Reading::Lines(content))
    {
        if (line.size() <= LONGEST_IGNORED_LINE || Reading::IsSkipped(line))
            continue;
        const QStringList tokens = Reading::Tokens(QString::fromLatin1(line), ';');
        if (tokens.size() < 2)
            continue;
        durations_s.append(Reading::Number(tokens[1]).value_or(0));
        total_s += durations_s.last();
    }
    total_s += GAP_S * (durations_s.size() - 1);
}

int Tracks::FirstAfter(int delay_s) const
{
    std::int64_t next_s = 0; // when the track after the one looked at begins
    for (int i = 0; i < durations_s.size(); ++i)
    {
        next_s += durations_s[i] + GAP_S;
        if (next_s > delay_s)
            return i + 2;
    }
    return static_cast<int>(durations_s.size()) + 1;
}

unsigned int Wrapped(std::int64_t seconds)
{
    return static_cast<unsigned int>(static_cast<std::uint64_t>(seconds));
}

std::unique_ptr<PlayPlaylist> Load()
{
    try
    {
        return std::make_unique<PlayPlaylist>(u"08:30:00"_s, NAME, u"-1"_s, u"id"_s);
    }
    catch (const std::exception&)
    {
        return nullptr;
    }
}

// The first track that a start so late asks for. The peer refuses: waiting for an end costs far more than the rest.
int FirstTrack(PlayPlaylist& playlist, int delay_s)
{
    playlist.PrepareDelayed(static_cast<unsigned int>(delay_s));
    EXPECT_THAT(!playlist.Run() && !playlist.IsRunning() && playlist.IsCompleted(), "the peer refuses");
    const QList<PeerRequest> requests = Engine::TakeRequests();
    EXPECT_EQUAL(requests.size(), 1);
    return requests.value(0).arguments.value(2).toInt();
}

QList<int> Delays(const PlayPlaylist& playlist, const Tracks& tracks)
{
    QList<int> delays{
        1, 2, 3, 60, 3600, 86399, std::numeric_limits<int>::max(), static_cast<int>(playlist.GetDelayable_s())};
    std::int64_t start_s = 0;
    for (const int duration_s : tracks.durations_s.mid(0, 4))
    {
        start_s += duration_s + GAP_S;
        delays.append({static_cast<int>(start_s - 1), static_cast<int>(start_s), static_cast<int>(start_s + 1)});
    }
    return delays;
}

void CheckStarts(PlayPlaylist& playlist, int count, const Tracks& tracks, bool isPlain)
{
    Engine::SetAnswer(Engine::REFUSED);
    EXPECT_EQUAL(FirstTrack(playlist, 0), 1);
    for (const int delay_s : Delays(playlist, tracks))
    {
        const int first = FirstTrack(playlist, delay_s);
        EXPECT_THAT(first >= 1 && first <= count + 1, QByteArray::number(first));
        EXPECT_EQUAL(FirstTrack(playlist, delay_s), first);
        const bool isBeyondEnd = static_cast<unsigned int>(delay_s) >= Wrapped(tracks.total_s);
        // A start in time is what a later start, too late for the list, leaves standing.
        if (isPlain)
            EXPECT_EQUAL(first, delay_s <= 0 || isBeyondEnd ? 1 : tracks.FirstAfter(delay_s));
        EXPECT_EQUAL(FirstTrack(playlist, 0), 1);
    }
    EXPECT_EQUAL(FirstTrack(playlist, -1), 1);
    Engine::SetAnswer(Engine::ACCEPTED);
}

void CheckEnd(PlayPlaylist& playlist)
{
    EXPECT_THAT(playlist.Run() && playlist.IsRunning() && !playlist.IsCompleted(), "the peer accepts");
    Engine::EmitSignals(NAME);
    EXPECT_THAT(!playlist.IsRunning() && playlist.IsCompleted(), "it has ended");
    Engine::TakeRequests();
}

void CheckLoaded(PlayPlaylist& playlist, const QList<LogRecord>& log, const Tracks& tracks, bool isPlain)
{
    int count = 0;
    for (const LogRecord& record : log)
        count += Engine::MessageOf(record).startsWith("Playlist line found: ") ? 1 : 0;
    EXPECT_THAT(count > 0, "a playlist has tracks");
    if (isPlain)
    {
        EXPECT_EQUAL(count, tracks.durations_s.size());
        EXPECT_EQUAL(playlist.GetDelayable_s(), Wrapped(tracks.total_s - tracks.durations_s.value(count - 1)));
        const QByteArray length = QByteArray::number(static_cast<int>(Wrapped(tracks.total_s)));
        EXPECT_EQUAL(Engine::MessageOf(log.last()),
                     "TASK CREATED | PlayPlaylist: list at 08:30:00 (" + length + " s, vol=-1)");
    }
    EXPECT_THAT(!playlist.IsRunning() && !playlist.IsCompleted(), "a new playlist waits");
    EXPECT_EQUAL(playlist.m_identifier, u"id"_s);
    CheckStarts(playlist, count, tracks, isPlain);
    CheckEnd(playlist);
}

// last: the line without an end; 0 where there is none.
void CheckCut(int last, const QList<LogRecord>& log)
{
    const QByteArray said = "Playlist file may be cut: ";
    const QByteArray told = said + "line " + QByteArray::number(last) + " has no line end (path=";
    int found = 0;
    for (const LogRecord& record : log)
    {
        const QByteArray message = Engine::MessageOf(record);
        found += message.startsWith(said) ? 1 : 0;
        EXPECT_THAT(!message.startsWith(said) || message.startsWith(told), message);
    }
    EXPECT_EQUAL(found, last > 0 ? 1 : 0);
}

} // namespace

void Target::SetUp()
{
    Engine::SetUp();
}

void Target::Run(const QByteArray& input)
{
    Engine::Reset();
    Engine::Data().WritePlaylist(input, NAME);
    const bool isPlain = Reading::IsPlain(input);
    const Tracks tracks(input);
    std::unique_ptr<PlayPlaylist> playlist = Load();
    const QList<LogRecord> log = Engine::TakeLog();
    EXPECT_THAT(Engine::TakeRequests().isEmpty(), "reading asks nobody");
    EXPECT_EQUAL(Engine::OfLevel(1, log).isEmpty(), playlist != nullptr);
    if (isPlain)
    {
        EXPECT_EQUAL(playlist != nullptr, !tracks.durations_s.isEmpty());
        CheckCut(Reading::CutLine(input), log);
    }
    if (playlist != nullptr)
        CheckLoaded(*playlist, log, tracks, isPlain);
    playlist.reset();
    Engine::ExpectNobodyListens();
}
