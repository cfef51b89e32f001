#include "sound/GstSoundMaker.h"

#include "sound/Frames.h"
#include "sound/GstLibrary.h"
#include "sound/WallClock.h"

#include <QTimer>
#include <algorithm>

#include <chrono>
#include <functional>

namespace
{

using namespace std::chrono_literals;

// What waits holds two seconds of sound and the threads of a pipeline: so much a small machine has.
constexpr int MOST_WAITING = 64;
// A fade and what is under way to the output, with room to spare.
constexpr auto STOP_PATIENCE = 1s;

std::chrono::milliseconds UntilHeard(qint64 heard_ns)
{
    const qint64 left_ms = (heard_ns - WallClock::Now_ns()) / Frames::NS_PER_MS;
    return std::chrono::milliseconds(std::clamp<qint64>(left_ms, 0, Frames::MOST_UNDER_WAY_MS));
}

} // namespace

GstSoundMaker::GstSoundMaker(const SoundSettings& settings)
    : m_mailbox(std::make_shared<Mailbox>(this))
    , m_mixer(std::make_shared<Mixer>(Mixer::Settings{settings.duck_percent, settings.offset_ms * Frames::NS_PER_MS},
                                      [this, mailbox = m_mailbox](std::vector<Mixer::Event> events) {
                                          mailbox->Post([this, told = std::move(events)] { OnMixed(told); });
                                      }))
    , m_output(settings.output, m_mixer)
    , m_absence([mixer = m_mixer] { return mixer->Mixed(); })
{
    GstLibrary::Init();
    connect(&m_output, &Output::Opened, this, &GstSoundMaker::OnOpened);
    connect(&m_output, &Output::Failed, this, &GstSoundMaker::OnOutputFailed);
    connect(&m_output, &Output::Lost, this, &GstSoundMaker::OnOutputLost);
    connect(&m_output, &Output::Stuck, this, &GstSoundMaker::Stuck);
    connect(&m_absence, &OutputAbsence::Lasts, this, &GstSoundMaker::EndWithoutOutput);
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
    const auto waiting = std::count_if(m_items.begin(), m_items.end(),
                                       [](const auto& i) { return i.second.piece.due_ms && !i.second.hasBegun; });
    Item& item = m_items[id];
    item.piece = piece;
    item.hadOutput = m_output.IsOpen();
    m_output.SetWanted(true);
    if (piece.due_ms && waiting >= MOST_WAITING)
    {
        m_mailbox->Post([this, id] { End(id, QStringLiteral("%1 others wait already").arg(MOST_WAITING)); });
        return id;
    }
    m_sources.TellBehind();
    Prepare(id, item);
    m_output.Open();
    return id;
}

void GstSoundMaker::Prepare(Id id, Item& item)
{
    const Piece& piece = item.piece;
    item.preparation = Preparation::Of(piece, m_sources.Of(piece.place));
    Follow(id, *item.preparation);
    Voice::Setup setup{id, piece.place, item.preparation->Frames(), std::nullopt, piece.volume};
    if (piece.due_ms)
        setup.due_ns = *piece.due_ms * Frames::NS_PER_MS;
    m_mixer->Add(std::move(setup));
}

void GstSoundMaker::Follow(Id id, const Preparation& preparation)
{
    connect(&preparation, &Preparation::Ready, this, [this, id] {
        m_items.at(id).isPrepared = true;
        TellReady(id);
    });
    connect(&preparation, &Preparation::Failed, this, [this, id](const QString& reason) { End(id, reason); });
    if (m_items.at(id).piece.place == Piece::Place::PLAYLIST)
        connect(&preparation, &Preparation::Skipped, this,
                [this, id](const QString& source, const QString& reason) { Q_EMIT Skipped(id, source, reason); });
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
    // It may be stopped because its source hangs.
    if (!found->second.isReadyTold)
        m_sources.TellBehind();
    m_mixer->Stop(id);
    // The mixer tells the end; without an output it does not run.
    QTimer::singleShot(m_output.IsOpen() ? STOP_PATIENCE : 0s, this, [this, id] { End(id, {}); });
}

void GstSoundMaker::SetVolume(Id id, double volume)
{
    const auto found = m_items.find(id);
    if (found != m_items.end())
        found->second.piece.volume = volume;
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
        const auto found = m_items.find(event.id);
        if (found == m_items.end() || found->second.preparation == nullptr)
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
    item.begun_ns = heard_ns;
    TellReady(id);
    AtMoment(id, heard_ns, [this, id] { TellStarted(id); });
}

void GstSoundMaker::TellStarted(Id id)
{
    Item& item = m_items.at(id);
    if (!std::exchange(item.isHeard, true))
        Q_EMIT Started(id, (item.begun_ns + Frames::NS_PER_MS / 2) / Frames::NS_PER_MS);
}

void GstSoundMaker::OnEnded(Id id, qint64 heard_ns)
{
    const Item& item = m_items.at(id);
    const bool isWhole = item.isStopped || item.piece.place == Piece::Place::PLAYLIST;
    const QString reason = isWhole ? QString() : item.preparation->Reason();
    AtMoment(id, item.hasBegun ? heard_ns : 0, [this, id, reason] {
        // A device whose clock runs unevenly may be past the end before the begin.
        if (m_items.at(id).hasBegun)
            TellStarted(id);
        End(id, reason);
    });
}

// Unless the output took with it what was on its way.
void GstSoundMaker::AtMoment(Id id, qint64 heard_ns, std::function<void()> work)
{
    QTimer::singleShot(UntilHeard(heard_ns), Qt::PreciseTimer, this,
                       [this, id, losses = m_items.at(id).losses, work = std::move(work)] {
                           const auto found = m_items.find(id);
                           if (found != m_items.end() && found->second.losses == losses)
                               work();
                       });
}

void GstSoundMaker::End(Id id, const QString& reason)
{
    const auto found = m_items.find(id);
    if (found == m_items.end())
        return;
    m_mixer->Remove(id);
    LeavePreparation(found->second);
    m_items.erase(found);
    m_output.SetWanted(!m_items.empty());
    Q_EMIT Ended(id, reason);
}

void GstSoundMaker::LeavePreparation(Item& item)
{
    if (item.preparation == nullptr)
        return;
    // It may be the one that tells.
    item.preparation->disconnect(this);
    item.preparation.release()->deleteLater();
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
