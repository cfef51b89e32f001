#pragma once

#include <QString>

// What a sound library says of a file: mp3, wav, ogg, flac or opus.
struct SoundFile
{
    double length_s; // 0 where it cannot be read
    QString error;   // why it cannot be read from its begin to its end; empty where it can

    // Whether the program was built with a sound library. Read says nothing without one.
    [[nodiscard]] static bool IsSupported();

    // path: of a regular file. Reads its begin and its end, which takes no time however long it is.
    [[nodiscard]] static SoundFile Read(const QString& path);
};
