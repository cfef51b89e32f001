#include "sound/Preparation.h"

#include "sound/Frames.h"
#include "sound/LivePreparation.h"
#include "sound/TrackPreparation.h"

std::unique_ptr<Preparation> Preparation::Of(const Piece& piece, Workers& workers)
{
    if (piece.place == Piece::Place::MESSAGE || piece.place == Piece::Place::PLAYLIST)
        return std::make_unique<TrackPreparation>(piece.sources, Frames::FromMs(piece.gap_ms), workers);
    const auto kind = piece.place == Piece::Place::AUX ? Decoder::Kind::CAPTURE : Decoder::Kind::STREAM;
    return std::make_unique<LivePreparation>(kind, piece.sources.value(0), workers);
}
