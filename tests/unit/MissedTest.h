#pragma once

#include "MissedLines.h"
#include "PassingTest.h"

// The fixture of the tests about starts that pass, on Wednesday, 15 May 2024, around 08:30:00.
class MissedTest : public PassingTest
{
    Q_OBJECT
protected:
    enum Load
    {
        RELOAD,
        UPDATE,
        ENABLING,
        ANOTHER_FILE,
    };

    inline static const QTime DUE{8, 30};
    inline static const QDate WEDNESDAY{2024, 5, 15};
    inline static const QByteArray VOLUME = "5 (Volume)";
    inline static const QByteArray MESSAGE = "1 (PlayMessage)";
    inline static const QByteArray PLAYLIST = "2 (PlayPlaylist)";

    // Loads the lines so many milliseconds before 08:30:00.
    void StartBefore(int before_ms, const QByteArrayList& lines);

    // The method is answered after so long, while nothing else goes on.
    void AnswerAfter(int time_ms, const char* method, const PeerReply& reply = PeerReply(0));

    // Loads the same lines again.
    void LoadAnew(Load load);
};
