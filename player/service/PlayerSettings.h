#pragma once

#include "SoundSettings.h"
#include "text/PlaylistItem.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// The section [PLAYER] of the configuration. Nothing of it is needed.
struct PlayerSettings
{
    static constexpr const char* FILE_VARIABLE = "OZNA_CONFIG_FILE";
    static constexpr const char* DEFAULT_FILE = "/opt/ozna/config/ozna.ini";
    static constexpr int AMPLIFIERS = 8; // a bit each

    struct Station
    {
        double frequency_MHz;
        QString address;
    };

    // The station of that frequency, or of one that is written alike with two decimals; null where there is none.
    [[nodiscard]] const Station* StationAt(double frequency_MHz) const;

    // The keys of the section; where several keys begin alike, as Radio98.5 does, what they begin with.
    [[nodiscard]] static QStringList Names();

    // The file that FILE_VARIABLE names in the environment, or DEFAULT_FILE.
    [[nodiscard]] static QString File();

    // Reads that file. Without it all is as it stands here. A value that is of no use is logged, with the file, its key
    // and the form it takes, and does not count; but an output of no use is kept, so that each request fails with its
    // name. An empty output is none, and the default counts.
    [[nodiscard]] static PlayerSettings Read();

    QString media = QStringLiteral("/opt/ozna/data/media");
    QString playlists = QStringLiteral("/opt/ozna/data/playlists");
    qint64 gap_ms = qint64{PLAYLIST_GAP_S} * 1000; // as the daemon counts for a late start
    SoundSettings sound;
    QString aux; // "alsa:DEVICE" or "pulse:DEVICE"; empty: not set up
    QList<Station> stations;
    QHash<int, QString> amplifiers; // by their numbers, counted from 1: names of outputs
    QStringList lights;             // names of outputs or backlights
    QStringList complaints;         // what was logged when it was read
};
