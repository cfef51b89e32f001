#pragma once

#include "Request.h"
#include "peers/PeerReply.h"

#include <QByteArray>
#include <QList>

// What a peer may answer to a request, and what a task has to read from it.
struct PeerAnswer
{
    const char* name = nullptr;
    PeerReply reply{0};
    bool isBusError = false;
    QByteArray error; // the bus's message, where the call failed on the bus
    int status = 0;   // also where it failed

    [[nodiscard]] bool IsAccepted() const { return !isBusError && status == 0; }

    // How a request of which the daemon looks at that has to take it.
    [[nodiscard]] Outcome TakenAs(Judged judged) const;

    // Records with what was answered in the place of {status} and {error}.
    [[nodiscard]] QStringList Filled(const QStringList& records) const;
};

namespace PeerAnswers
{

// Accepted, refused, of another type than a status, and failed on the bus.
const QList<PeerAnswer>& All();

// Adds the column "answer", and a row for each of them.
void AddRows();

} // namespace PeerAnswers
