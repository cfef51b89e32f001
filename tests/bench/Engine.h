#pragma once

#include "VirtualClock.h"

#include <QString>

#include <memory>

class Scheduler;

// The daemon's engine in this process, as the benchmarks use it: without a bus, with the log client that writes errors
// only, and on a clock that stands at noon until it is moved. OZNA_DATA_DIR names the folder of the schedules. Only one
// may live; it needs an application object.
class Engine final
{
public:
    Engine();
    ~Engine();

    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Deletes all actions, and has the next Load or Reload take that schedule file, as "all-100": with so many lines.
    void Choose(const QString& file);

    // Loads the chosen file. What it loads is to be what the file's name says; throws std::runtime_error otherwise.
    void Load();

    // The same as a client asks for it: what is loaded goes first.
    void Reload();

    // The actions that start within the next seconds come to the early list, all those of the file; throws
    // std::runtime_error if it is another number.
    void FindEarly();

    // One pass each, and for the far one the three seconds before it. Every ten minutes the clock goes back to noon.
    void FarPass();
    void EarlyPass();

private:
    void ResetClock();
    [[nodiscard]] int Lines() const;
    void CheckLoaded() const;

    VirtualClock m_clock;
    std::unique_ptr<Scheduler> m_scheduler;
    QString m_file;
    int m_passes = 0;
};
