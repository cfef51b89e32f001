#pragma once

#include <QString>

// The folder that holds the device's schedules and playlists, without a trailing separator.
// The one thing in which the installed daemon and the one for demo and tests differ: each links its own
// definition, and nothing at run time moves the installed one's. The other's is OZNA_DATA_DIR, and the root of the file
// system without it.
QString DataRoot();
