#pragma once

#include <QList>
#include <QVariantList>

class Request;

// A signal of a peer that the daemon listens to while a task waits for it.
struct PeerSignal
{
    const char* name;
    QVariantList values;       // as the device sends it
    QList<QVariantList> wrong; // with which it is another signal
};

// The one that the task of request waits for, or any that the daemon knows of the peer; null where it knows none.
const PeerSignal* FindSignal(const Request& request);
