#pragma once

#include <QHash>
#include <QString>

#include <vector>

// What a page shows besides the rehearsal itself. All of it comes from who asks for the page.
struct PageNotes
{
    // One thing that the check has found.
    struct Finding
    {
        int line; // counted from 1
        bool isError;
        QString name; // of the kind of finding
        QString text; // what is wrong, and what to write instead
    };

    QString zone;                       // the name of the time zone that the times are in
    std::vector<Finding> findings = {}; // in the order of the lines
    QHash<int, QString> wanted = {};    // by line: what it plays or sets, for an event that asks for nothing
    int volumeLine = 0;                 // which has set the volume last before the rehearsal's span; 0: none
    int lightLine = 0;                  // the same for the light
};
