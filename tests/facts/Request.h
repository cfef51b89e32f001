#pragma once

#include "RequestTable.h"

#include <QStringList>

// How the daemon takes the answer to a request.
enum class Outcome
{
    BUS_ERROR, // no answer came, or an error
    REFUSED,   // a status other than 0
    ACCEPTED,  // status 0, and whatever cannot be read as a status
};

// A row of the table with the texts of one of its examples. Records keep the placeholders {error} and {status}.
class Request final
{
public:
    Request(const RequestRow& row, const Example& example);

    // The one with that id, with the example of those parameters (null: without any). Ends the program where the table
    // has none.
    [[nodiscard]] static Request Find(const char* id, const char* parameters);

    // Those of the fault matrix, each with its first example.
    [[nodiscard]] static QList<Request> First();

    // The same with every example.
    [[nodiscard]] static QList<Request> All();

    [[nodiscard]] const RequestRow& Row() const { return *m_row; }

    [[nodiscard]] QString Schedule() const; // "Volume|50"
    [[nodiscard]] QString Type() const;     // as the scheduler logs it: "5 (Volume)"
    [[nodiscard]] QString Call() const;     // "sound.SetMasterVolume d 50"
    [[nodiscard]] QString Peer() const;     // "sound"
    [[nodiscard]] QString Method() const;   // "sound.SetMasterVolume"

    // What the same task sends before, one at most, and what it logs of that.
    [[nodiscard]] QList<Request> Before() const;
    [[nodiscard]] QStringList RecordsBefore() const;

    // The records of the request itself: what comes ahead of it, and what its outcome brings. Behind RecordsBefore.
    [[nodiscard]] QStringList Records(Outcome outcome) const;

    // Whether the task goes on with another request, and which.
    [[nodiscard]] bool IsFollowed(Outcome outcome) const;
    [[nodiscard]] Request Followed() const;

    // The records of the end that it waits for, and of the end together with its peer; also where it is the request
    // before or behind it that has begun what ends.
    [[nodiscard]] QStringList Ended() const;
    [[nodiscard]] QStringList EndedWithPeer() const;

private:
    [[nodiscard]] QString Filled(const char* text) const;
    [[nodiscard]] Request Other(const char* id) const;
    [[nodiscard]] Request Begun() const;

    const RequestRow* m_row;
    Example m_example;
};

// Records with what was answered in the place of {error} and {status}.
[[nodiscard]] QStringList Answered(QStringList records, const QString& error, int status);

// Records as a process's log client shows those up to maxLevel: without line ends.
[[nodiscard]] QStringList Shown(QStringList records, int maxLevel);
