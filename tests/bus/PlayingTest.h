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

    // A row for each way.
    static void AddWays();

    inline static const QStringList RUNNING{
        QStringLiteral("4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it"),
        QStringLiteral("4 [tasks/PlayPlaylist.cpp] Scheduled Playlist day running: stop it (from "
                       "/com/kestrelix/ozna/updatemanager/updateobj)"),
        QStringLiteral("4 [tasks/PlayStream.cpp] Scheduled Stream rtsp://10.0.0.5:8554/live running: stop it")};

    inline static const QStringList NOT_STOPPED{
        QStringLiteral("2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file"),
        QStringLiteral("2 [tasks/PlayPlaylist.cpp] Impossible to stop scheduled playlist"),
        QStringLiteral("2 [tasks/PlayStream.cpp] Impossible to stop scheduled stream")};

    inline static const QStringList STOPS{QStringLiteral("sound.StopPlay ss file "),
                                          QStringLiteral("sound.StopPlay ss playlist morning"),
                                          QStringLiteral("sound.StopPlay ss stream ")};

    inline static const QStringList REQUESTS{QStringLiteral("sound.PlayFile ss gong.mp3 08:30:00"),
                                             QStringLiteral("sound.PlayPlaylist ssusb day morning 1 08:30:00 false"),
                                             QStringLiteral("sound.PlayStream su rtsp://10.0.0.5:8554/live 0")};

    inline static const QStringList WAYS{QStringLiteral("disabling"), QStringLiteral("reload"),
                                         QStringLiteral("file update"), QStringLiteral("another file"),
                                         QStringLiteral("SIGTERM")};
};
