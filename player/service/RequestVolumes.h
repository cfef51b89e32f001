#pragma once

#include "SoundMaker.h"

#include <QHash>
#include <QObject>
#include <QTimer>

#include <map>
#include <optional>

class Volumes;

// Tells what the volume of a source is meant for. It is set right before the request that it belongs to, whose sound
// may come seconds later, while something else of that source still plays: it must not be heard there. Where no request
// follows, it is meant for what plays.
class RequestVolumes final : public QObject
{
    Q_OBJECT
public:
    static constexpr int FOLLOWS_WITHIN_MS = 300;

    // volumes: keeps them, and outlives this object.
    explicit RequestVolumes(Volumes& volumes);
    ~RequestVolumes() override;
    Q_DISABLE_COPY_MOVE(RequestVolumes)

    // 0 to 100 percent.
    void Set(Piece::Place place, double volume);

    // The volume that was set for a request that comes now; it is no other request's then. None where it has none of
    // its own.
    [[nodiscard]] std::optional<double> Take(Piece::Place place);

    // What a request without a volume of its own gets.
    [[nodiscard]] double Of(Piece::Place place) const;

Q_SIGNALS:
    // No request has followed.
    void Changed(Piece::Place place, double volume);

private:
    Volumes& m_volumes;
    std::map<Piece::Place, QTimer> m_waiting;
};
