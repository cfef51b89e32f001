#pragma once

#include "BusTest.h"
#include "Lines.h"

// What the tests about messages share. The clock stands at 08:29:49 when the daemon starts: the first far pass, three
// seconds later, finds what is due at 08:30:00 early.
class MessageTest : public BusTest
{
    Q_OBJECT
protected:
    static QByteArray MessageLine(const char* parameters);

    // The record of an accepted request, with the volume.
    static QString Requested(int volume = -1);

    // Starts the daemon with one message and returns once its request has been answered and logged.
    [[nodiscard]] bool StartAndWaitForRequest();

    inline static const QStringList EARLY{QStringLiteral("4 [Scheduler.cpp] EARLY action found: 1 (PlayMessage)")};
    inline static const QStringList READY_MESSAGE{
        QStringLiteral("4 [Scheduler.cpp] READY action found: 1 (PlayMessage)")};
    inline static const QString RUNNING =
        QStringLiteral("4 [tasks/PlayMessage.cpp] Scheduled Message gong.mp3 running: stop it");
    inline static const QString NOT_STOPPED =
        QStringLiteral("2 [tasks/PlayMessage.cpp] Impossible to stop scheduled file");
    inline static const QString PLAY = QStringLiteral("sound.PlayFile ss gong.mp3 08:30:00");
    inline static const QString STOP = QStringLiteral("sound.StopPlay ss file ");
    static constexpr const char* PLAY_FILE = "sound.PlayFile";
    static constexpr const char* STOP_PLAY = "sound.StopPlay";
    static constexpr const char* PLAY_FILE_COMPLETED = "sound.PlayFileCompleted";
};
