#pragma once

#include <QtGlobal>

// Where a voice has its frames from. Read by the mixer's thread, which never waits.
class Feed
{
public:
    Feed() = default;
    virtual ~Feed() = default;
    Q_DISABLE_COPY_MOVE(Feed)

    // Gives up to count frames, and tells how many. Fewer than asked for: there are none at the moment, or IsOver.
    virtual qint64 Read(float* frames, qint64 count) = 0;

    // There is something to begin with.
    [[nodiscard]] virtual bool IsReady() const = 0;

    // Nothing comes any more.
    [[nodiscard]] virtual bool IsOver() const = 0;
};
