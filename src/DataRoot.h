#pragma once

#include <QString>

// The installed daemon's.
inline constexpr const char* DEVICE_DATA_ROOT = "/opt/ozna/data";

// The folder that holds the device's schedules and playlists, without a trailing separator.
// The only difference between the installed daemon and the one for demo and tests: each links its own definition. The
// installed daemon's folder is fixed. The other's is OZNA_DATA_DIR, or the root of the file system if that is not
// set.
QString DataRoot();
