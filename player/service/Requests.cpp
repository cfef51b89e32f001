#include "Requests.h"

#include "PlayerLog.h"
#include "Sources.h"
#include "text/Printable.h"

#include <QDateTime>
#include <QTimer>

namespace
{

const QString TIME_FORMAT = QStringLiteral("hh:mm:ss.zzz");

QByteArray TimeOf(qint64 moment_ms)
{
    return QDateTime::fromMSecsSinceEpoch(moment_ms).toString(TIME_FORMAT).toLatin1();
}

} // namespace

Requests::Requests(SoundMaker& maker)
    : m_maker(maker)
{
    connect(&maker, &SoundMaker::Ready, this, &Requests::Accept);
    connect(&maker, &SoundMaker::Started, this, &Requests::OnStarted);
    connect(&maker, &SoundMaker::Skipped, this, &Requests::OnSkipped);
    connect(&maker, &SoundMaker::Ended, this, &Requests::OnEnded);
}

Requests::~Requests() = default;

void Requests::Play(const Request& request, const Piece& piece, Answer answer)
{
    const auto same = std::ranges::find_if(m_entries, [&](const Entry& entry) {
        return entry.request.IsSame(request) && entry.piece.sources == piece.sources;
    });
    const auto entry =
        same != m_entries.end() ? same : m_entries.insert(m_entries.end(), {m_maker.Play(piece), piece, request, {}});
    const SoundMaker::Id id = entry->id;
    entry->answers.push_back(std::move(answer));
    if (same == m_entries.end())
    {
        PLAYER_LOG(LEVEL_NORMAL, "ASKED FOR | %s: %s @ %s", SourceAt(piece.place).name, Printable(request.name).Text(),
                   piece.due_ms ? TimeOf(*piece.due_ms).constData() : "once");
        QTimer::singleShot(ANSWERED_WITHIN_MS, Qt::PreciseTimer, this, [this, id] { OnPatienceEnded(id); });
        return;
    }
    PLAYER_LOG(LEVEL_NORMAL, "ASKED FOR AGAIN | %s: %s", SourceAt(piece.place).name, Printable(request.name).Text());
    if (request.volume)
    {
        entry->request.volume = request.volume;
        m_maker.SetVolume(id, *request.volume);
    }
    if (entry->isAccepted)
        AnswerAll(*entry, Status::ACCEPTED);
}

bool Requests::Join(const Answer& answer)
{
    if (m_entries.empty())
        return false;
    Entry& entry = m_entries.front();
    entry.answers.push_back(answer);
    if (entry.isAccepted)
        AnswerAll(entry, Status::ACCEPTED);
    return true;
}

void Requests::Stop(const std::optional<QString>& identifier)
{
    FinishWhere(Status::STOPPED,
                [&](const Entry& entry) { return !identifier || entry.request.identifier == *identifier; });
}

void Requests::End()
{
    FinishWhere(Status::ENDING, [](const Entry&) { return true; });
}

template <typename Matches> void Requests::FinishWhere(Status refusal, Matches matches)
{
    for (auto entry = m_entries.begin(); entry != m_entries.end();)
    {
        const auto current = entry++;
        if (!matches(*current))
            continue;
        m_maker.Stop(current->id);
        PLAYER_LOG(LEVEL_NORMAL, "STOPPED | %s: %s", SourceAt(current->piece.place).name,
                   Printable(current->request.name).Text());
        Finish(current, refusal);
    }
}

void Requests::SetVolume(double volume)
{
    for (const Entry& entry : m_entries)
    {
        if (entry.isHeard || !entry.request.volume)
            m_maker.SetVolume(entry.id, volume);
    }
}

Requests::Entries::iterator Requests::Find(SoundMaker::Id id)
{
    return std::ranges::find(m_entries, id, &Entry::id);
}

void Requests::AnswerAll(Entry& entry, Status status)
{
    for (const Answer& answer : std::exchange(entry.answers, {}))
        answer(status);
    entry.isAccepted = status == Status::ACCEPTED;
}

void Requests::Accept(SoundMaker::Id id)
{
    const auto entry = Find(id);
    if (entry != m_entries.end())
        AnswerAll(*entry, Status::ACCEPTED);
}

// What was not accepted has no end.
void Requests::Finish(Entries::iterator entry, Status refusal)
{
    Entries finished;
    finished.splice(finished.begin(), m_entries, entry);
    if (!entry->isAccepted)
        AnswerAll(*entry, refusal);
    if (entry->isAccepted)
        Q_EMIT Completed(entry->request.name);
}

void Requests::OnStarted(SoundMaker::Id id, qint64 heard_ms)
{
    const auto entry = Find(id);
    if (entry == m_entries.end())
        return;
    entry->isHeard = true;
    AnswerAll(*entry, Status::ACCEPTED);
    PLAYER_LOG(LEVEL_NORMAL, "STARTED | %s: %s @ %s", SourceAt(entry->piece.place).name,
               Printable(entry->request.name).Text(), TimeOf(heard_ms).constData());
}

void Requests::OnSkipped(SoundMaker::Id id, const QString& source, const QString& reason)
{
    const auto entry = Find(id);
    if (entry != m_entries.end())
        PLAYER_LOG(LEVEL_WARNING, "%s: %s is left out: %s", Printable(entry->request.name).Text(),
                   Printable(source).Text(), Printable(reason).Text());
}

void Requests::OnEnded(SoundMaker::Id id, const QString& reason)
{
    const auto entry = Find(id);
    if (entry == m_entries.end())
        return;
    const char* const source = SourceAt(entry->piece.place).name;
    const Printable name(entry->request.name);
    if (reason.isEmpty())
        PLAYER_LOG(LEVEL_NORMAL, "ENDED | %s: %s", source, name.Text());
    else
        PLAYER_LOG(LEVEL_ERROR, "ENDED | %s: %s: %s", source, name.Text(), Printable(reason).Text());
    Finish(entry, reason.isEmpty() ? Status::ACCEPTED : Status::CANNOT_PLAY);
}

void Requests::OnPatienceEnded(SoundMaker::Id id)
{
    const auto entry = Find(id);
    if (entry == m_entries.end() || entry->isAccepted)
        return;
    m_maker.Stop(id);
    OnEnded(id, QStringLiteral("it was not ready in time"));
}
