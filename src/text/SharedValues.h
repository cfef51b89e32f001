#pragma once

#include "TrackList.h"

#include <QString>

#include <memory>
#include <vector>

// Has equal texts, and equal lists of tracks, share their memory: thousands of entries of a schedule name the same few
// files. Compares a value with a few of those that came before, so that each costs the same however many there are.
class SharedValues final
{
public:
    using Tracks = std::shared_ptr<const TrackList>;

    // Values are shared for as long as the object lives. One object at a time.
    SharedValues();
    ~SharedValues();

    SharedValues(const SharedValues&) = delete;
    SharedValues& operator=(const SharedValues&) = delete;

    // text itself, or an equal one that shares its memory with others.
    [[nodiscard]] static QString Of(const QString& text);

    // The same for a list of tracks, which is not changed any more.
    [[nodiscard]] static Tracks Of(const TrackList& tracks);

private:
    std::vector<QString> m_texts; // each at the place that its hash gives it, or none
    std::vector<Tracks> m_tracks;
};
