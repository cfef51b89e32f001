#pragma once

#include "SoundMaker.h"
#include "sound/Feed.h"
#include "sound/Workers.h"

#include <QObject>
#include <QString>

#include <memory>

// The part of a piece that lives in the owner's thread: opens its sources, and sees that the next one is there in time.
class Preparation : public QObject
{
    Q_OBJECT
public:
    // Begins to prepare what a piece asks for.
    static std::unique_ptr<Preparation> Of(const Piece& piece, Workers& workers);

    // What the mixer reads; outlives this object while it does.
    [[nodiscard]] virtual std::shared_ptr<Feed> Frames() const = 0;

    // What went wrong with it by now, for the end; empty when nothing did.
    [[nodiscard]] virtual QString Reason() const = 0;

Q_SIGNALS:
    // Once: its beginning is there.
    void Ready();
    void Skipped(const QString& source, const QString& reason);
    // There is nothing to play. Nothing is told after it.
    void Failed(const QString& reason);
};
