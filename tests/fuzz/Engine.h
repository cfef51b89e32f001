#pragma once

#include "DataFolder.h"
#include "LogRecorder.h"
#include "PeerRecorder.h"
#include "VirtualClock.h"

// What the targets have the engine live in: a virtual clock, a data folder, recorded peers and a recorded log. There is
// one of each a process: making them anew would take longer than handling an input does.
namespace Engine
{

// How every peer answers every request.
enum Answer
{
    ACCEPTED,
    REFUSED,
    BUS_ERROR,
    ANSWERS,
};

// Once a process. Playlists of these names are there afterwards: "morning" and "xmas", with three tracks and one.
void SetUp();

// What each input finds: the clock as VirtualClock begins, peers that accept, nothing recorded.
void Reset();

VirtualClock& Time();
const DataFolder& Data();
void SetAnswer(Answer answer);

// The records, or requests, since the last call. Each of them is checked for what holds of all.
QList<LogRecord> TakeLog();
QList<PeerRequest> TakeRequests();

// Has the peers emit every signal that a task can listen to, some with text.
void EmitSignals(const QString& text);

// The same while no task lives: nothing may come of it.
void ExpectNobodyListens();

// The records with that level.
QList<LogRecord> OfLevel(unsigned int level, const QList<LogRecord>& records);

// The record's text without its prefix.
QByteArray MessageOf(const LogRecord& record);

} // namespace Engine
