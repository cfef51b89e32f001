#include "sound/Preparation.h"

#include "sound/Frames.h"
#include "sound/LivePreparation.h"
#include "sound/TrackPreparation.h"

#include <algorithm>

std::unique_ptr<Preparation> Preparation::Of(const Piece& piece, Workers& workers)
{
    const qint64 gap_ms = std::clamp<qint64>(piece.gap_ms, 0, Piece::LONGEST_GAP_MS);
    if (piece.place == Piece::Place::MESSAGE || piece.place == Piece::Place::PLAYLIST)
        return std::make_unique<TrackPreparation>(piece.sources, Frames::FromMs(gap_ms), workers);
    const auto kind = piece.place == Piece::Place::AUX ? Decoder::Kind::CAPTURE : Decoder::Kind::STREAM;
    return std::make_unique<LivePreparation>(kind, piece.sources.value(0), workers);
}
