#pragma once

#include "SoundMaker.h"
#include "sound/Workers.h"

// The threads that open and close sources: for files and for what is live apart, so that a disk that hangs takes only
// the files with it, and a network only the streams.
class SourceWorkers final
{
public:
    SourceWorkers();

    [[nodiscard]] Workers& Of(Piece::Place place);

    // Logs a warning for those that are behind; once, until they are not.
    void TellBehind();

private:
    struct Group
    {
        Workers workers;
        const char* name;
        bool isBehind = false;
    };
    static void TellBehind(Group& group);

    Group m_files;
    Group m_live;
};
