#pragma once

#include <QStringList>

class QCoreApplication;

// What the command line asks for.
struct Options
{
    QStringList absentInterfaces; // of the peers whose names are not taken
    bool quiet = false;           // nothing on standard output
    bool play = false;            // what is accepted happens, with its signals
    QString controlService;       // the name under which it is steered
    QString expectFile;           // of the requests that should come; empty: none

    // Reads the application's arguments. Ends the process after --help and --version, and with status 1 and a message
    // when there is an option that it does not know, or an interface that no peer has.
    static Options Parse(const QCoreApplication& app);
};
