#pragma once

#include "Means.h"
#include "Requests.h"

#include <QObject>

// Base of the players whose requests carry a start time and end with a name.
class TimedPlayer : public QObject
{
    Q_OBJECT
public:
    // The process ends: ends whatever plays or waits.
    void End() { m_requests.End(); }

Q_SIGNALS:
    void Completed(const QString& name);

protected:
    TimedPlayer(const Means& means, Piece::Place place);
    ~TimedPlayer() override;
    Q_DISABLE_COPY_MOVE(TimedPlayer)

    // A request that comes now: with the volume that was set for it, if any, and the moment that startTime means, if
    // any.
    [[nodiscard]] Requests::Request Begin(const QString& name, const QString& identifier, const QString& startTime);

    // Has the files of an accepted request played at its moment, or at once where that has passed.
    void Play(const Requests::Request& request, const QStringList& files, Answer answer);

    const Means m_means;
    Requests m_requests;

private:
    const Piece::Place m_place;
};
