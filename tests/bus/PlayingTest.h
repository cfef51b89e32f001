#pragma once

#include "BusTest.h"
#include "Lines.h"

// What the tests about playing share: a message, a playlist and a stream that play at once, and the ways in which their
// actions go away.
class PlayingTest : public BusTest
{
    Q_OBJECT
protected:
    // Writes the schedule, the playlist and the configuration, and starts the daemon eight seconds before all three are
    // due.
    [[nodiscard]] bool StartSchedule();

    // The same, until all three play and nothing is due any more. What was logged until then is taken.
    [[nodiscard]] bool StartPlaying();

    // Has the actions deleted in that way, one of WAYS, and waits until they are.
    void DeleteActions(const QString& by);

    // A row for each way, and one for SIGINT, the other signal that ends the daemon.
    static void AddWays(bool withInterrupt = false);

    // Of all three, in this order: the requests that start them and that stop them, the records of a stop that is
    // accepted and that is refused, and those of an end together with the peer.
    static const QStringList REQUESTS;
    static const QStringList STOPS;
    static const QStringList STOPPED_ALL;
    static const QStringList STOPPED_NONE;
    static const QStringList GONE;

    inline static const QStringList WAYS{QStringLiteral("disabling"), QStringLiteral("reload"),
                                         QStringLiteral("file update"), QStringLiteral("another file"),
                                         QStringLiteral("SIGTERM")};
};
