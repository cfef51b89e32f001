#include "TimedPlayer.h"

#include "Clock.h"
#include "PlayerSettings.h"
#include "RequestVolumes.h"
#include "StartMoment.h"

TimedPlayer::TimedPlayer(const Means& means, Piece::Place place)
    : m_means(means)
    , m_requests(means.maker)
    , m_place(place)
{
    connect(&m_requests, &Requests::Completed, this, &TimedPlayer::Completed);
    connect(&means.volumes, &RequestVolumes::Changed, this, [this](Piece::Place changed, double volume) {
        if (changed == m_place)
            m_requests.SetVolume(volume);
    });
}

TimedPlayer::~TimedPlayer() = default;

Requests::Request TimedPlayer::Begin(const QString& name, const QString& identifier, const QString& startTime)
{
    return {name, identifier, StartMoment::Nearest_ms(startTime, Clock::Read().calendar_ms),
            m_means.volumes.Take(m_place)};
}

void TimedPlayer::Play(const Requests::Request& request, const QStringList& files, Answer answer)
{
    Piece piece;
    piece.place = m_place;
    piece.sources = files;
    if (request.moment_ms && *request.moment_ms > Clock::Read().calendar_ms)
        piece.due_ms = request.moment_ms;
    piece.gap_ms = m_means.settings.gap_ms;
    piece.volume = request.volume.value_or(m_means.volumes.Of(m_place));
    m_requests.Play(request, piece, std::move(answer));
}
