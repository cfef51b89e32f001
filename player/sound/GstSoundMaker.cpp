#include "sound/GstSoundMaker.h"

#include "sound/Frames.h"
#include "sound/GstLibrary.h"
#include "sound/WallClock.h"

#include <algorithm>
#include <chrono>

namespace
{

using namespace std::chrono_literals;

// Sources that hang at the same time, on a lost disk for example, before the others wait.
constexpr int WORKERS = 16;
constexpr auto READY_PATIENCE = 2s;
// A fade and what is under way to the output, with room to spare.
constexpr auto STOP_PATIENCE = 1s;
// An output that comes back is still of use to a message so late, and to what went on when it left.
constexpr qint64 LATE_MS = 2'000;
constexpr int ABSENCE_S = 60;

QString WithoutOutput(const QString& reason)
{
    return QStringLiteral("no output: ") + reason;
}

bool IsOfTracks(Piece::Place place)
{
    return place == Piece::Place::MESSAGE || place == Piece::Place::PLAYLIST;
}

std::chrono::milliseconds UntilHeard(qint64 heard_ns)
{
    const qint64 left_ms = (heard_ns - WallClock::Now_ns()) / Frames::NS_PER_MS;
    return std::chrono::milliseconds(std::clamp<qint64>(left_ms, 0, LATE_MS));
}

} // namespace

GstSoundMaker::GstSoundMaker(const SoundSettings& settings)
    : m_mailbox(std::make_shared<Mailbox>(this))
    , m_workers(WORKERS)
    , m_mixer(std::make_shared<Mixer>(Mixer::Settings{settings.duck_percent, settings.offset_ms * Frames::NS_PER_MS},
                                      [this, mailbox = m_mailbox](std::vector<Mixer::Event> events) {
                                          mailbox->Post([this, told = std::move(events)] { OnMixed(told); });
                                      }))
    , m_output(settings.output, m_mixer)
{
    GstLibrary::Init();
    connect(&m_output, &Output::Opened, this, &GstSoundMaker::OnOpened);
    connect(&m_output, &Output::Failed, this, &GstSoundMaker::OnOutputFailed);
    connect(&m_output, &Output::Lost, this, &GstSoundMaker::OnOutputLost);
    connect(&m_absence, &QTimer::timeout, this, &GstSoundMaker::EndWithoutOutput);
}

GstSoundMaker::~GstSoundMaker()
{
    m_mailbox->Close();
    // An output that hangs keeps the mixer, but no source.
    for (const auto& [id, item] : m_items)
        m_mixer->Remove(id);
}

SoundMaker::Id GstSoundMaker::Play(const Piece& piece)
{
    const Id id = ++m_last;
    Item& item = m_items[id];
    item.place = piece.place;
    item.due_ms = piece.due_ms;
    item.preparation = Preparation::Of(piece, m_workers);
    item.hadOutput = m_output.IsOpen();
    Follow(id, *item.preparation);

    Voice::Setup setup{id, piece.place, item.preparation->Frames(), std::nullopt, piece.volume};
    if (piece.due_ms)
        setup.due_ns = *piece.due_ms * Frames::NS_PER_MS;
    m_mixer->Add(std::move(setup));
    m_output.SetWanted(true);
    m_output.Open();
    return id;
}

void GstSoundMaker::Follow(Id id, const Preparation& preparation)
{
    connect(&preparation, &Preparation::Ready, this, [this, id] {
        m_items.at(id).isPrepared = true;
        TellReady(id);
    });
    connect(&preparation, &Preparation::Failed, this, [this, id](const QString& reason) { End(id, reason); });
    const Piece::Place place = m_items.at(id).place;
    if (place == Piece::Place::PLAYLIST)
        connect(&preparation, &Preparation::Skipped, this,
                [this, id](const QString& source, const QString& reason) { Q_EMIT Skipped(id, source, reason); });
    if (IsOfTracks(place))
        QTimer::singleShot(READY_PATIENCE, this, [this, id] {
            const auto found = m_items.find(id);
            if (found != m_items.end() && !found->second.isReadyTold)
                End(id, QStringLiteral("it was not ready in time"));
        });
}

void GstSoundMaker::TellReady(Id id)
{
    Item& item = m_items.at(id);
    if (!item.isPrepared || !item.hadOutput || item.isStopped || std::exchange(item.isReadyTold, true))
        return;
    Q_EMIT Ready(id);
}

void GstSoundMaker::Stop(Id id)
{
    const auto found = m_items.find(id);
    if (found == m_items.end())
        return;
    found->second.isStopped = true;
    m_mixer->Stop(id);
    // The mixer tells the end; without an output it does not run.
    QTimer::singleShot(m_output.IsOpen() ? STOP_PATIENCE : 0s, this, [this, id] { End(id, {}); });
}

void GstSoundMaker::SetVolume(Id id, double volume)
{
    m_mixer->SetVolume(id, volume);
}

void GstSoundMaker::SetMasterVolume(double volume)
{
    m_mixer->SetMasterVolume(volume);
}

void GstSoundMaker::OnMixed(const std::vector<Mixer::Event>& events)
{
    for (const Mixer::Event& event : events)
    {
        if (!m_items.contains(event.id))
            continue;
        if (event.kind == Mixer::Event::Kind::BEGUN)
            OnBegun(event.id, event.heard_ns);
        else
            OnEnded(event.id, event.heard_ns);
    }
}

// What is mixed is heard a moment later, and told then.
void GstSoundMaker::OnBegun(Id id, qint64 heard_ns)
{
    Item& item = m_items.at(id);
    item.hasBegun = true;
    item.hadOutput = true;
    TellReady(id);
    QTimer::singleShot(UntilHeard(heard_ns), Qt::PreciseTimer, this, [this, id, heard_ns] {
        if (m_items.contains(id))
            Q_EMIT Started(id, heard_ns / Frames::NS_PER_MS);
    });
}

void GstSoundMaker::OnEnded(Id id, qint64 heard_ns)
{
    const Item& item = m_items.at(id);
    const bool isWhole = item.isStopped || item.place == Piece::Place::PLAYLIST;
    const QString reason = isWhole ? QString() : item.preparation->Reason();
    QTimer::singleShot(item.hasBegun ? UntilHeard(heard_ns) : 0ms, Qt::PreciseTimer, this,
                       [this, id, reason] { End(id, reason); });
}

void GstSoundMaker::End(Id id, const QString& reason)
{
    const auto found = m_items.find(id);
    if (found == m_items.end())
        return;
    m_mixer->Remove(id);
    // It may be the one that tells.
    found->second.preparation->disconnect(this);
    found->second.preparation.release()->deleteLater();
    m_items.erase(found);
    m_output.SetWanted(!m_items.empty());
    Q_EMIT Ended(id, reason);
}

void GstSoundMaker::EndAll(const std::function<bool(const Item&)>& condition, const QString& reason)
{
    std::vector<Id> ids;
    for (const auto& [id, item] : m_items)
    {
        if (condition(item))
            ids.push_back(id);
    }
    for (const Id id : ids)
        End(id, reason);
}

void GstSoundMaker::OnOpened()
{
    m_absence.stop();
    std::vector<Id> ids;
    for (auto& [id, item] : m_items)
    {
        item.hadOutput = true;
        ids.push_back(id);
    }
    for (const Id id : ids)
    {
        if (m_items.contains(id))
            TellReady(id);
    }
}

// What waits keeps waiting for an output that it had; who asks now is told at once.
void GstSoundMaker::OnOutputFailed(const QString& reason)
{
    EndAll([](const Item& item) { return !item.hadOutput; }, WithoutOutput(reason));
}

// A message of which a part was heard has had its moment. The others go on where they were.
void GstSoundMaker::OnOutputLost(const QString& reason)
{
    m_absent_s = 0;
    m_absence.start(1s);
    EndAll([](const Item& item) { return item.hasBegun && item.place == Piece::Place::MESSAGE; },
           WithoutOutput(reason));
}

void GstSoundMaker::EndWithoutOutput()
{
    ++m_absent_s;
    const qint64 now_ms = WallClock::Now_ns() / Frames::NS_PER_MS;
    const auto isTooLate = [this, now_ms](const Item& item) {
        const bool isWaiting = !item.hasBegun && item.due_ms;
        return isWaiting ? *item.due_ms + LATE_MS < now_ms : m_absent_s >= ABSENCE_S;
    };
    EndAll(isTooLate, WithoutOutput(QStringLiteral("it has not come back")));
    if (m_items.empty())
        m_absence.stop();
}
