#include "Engine.h"

#include "Globals.h"
#include "Scheduler.h"

#include <LogInterface.h>

#include <stdexcept>

namespace
{

constexpr int FAR_INTERVAL_S = Scheduler::FAR_INTERVAL_MS / 1000;
constexpr int PASSES_UNTIL_NOON = 600 / FAR_INTERVAL_S;
const QTime NOON(12, 0);

QString FileName(const QString& file)
{
    return file + QStringLiteral(".csv");
}

} // namespace

Engine::Engine()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    // Every record is formatted and handed over; what the client does with it is not the engine's time.
    qputenv("OZNA_LOG_LEVEL", "1");
    if (_logInterface == nullptr)
        _logInterface = new LogInterface(QString());
    m_scheduler = std::make_unique<Scheduler>(QString());
}

Engine::~Engine() = default;

void Engine::Choose(const QString& file)
{
    m_file = file;
    static_cast<void>(m_scheduler->SetEnabled(false));
    static_cast<void>(m_scheduler->SetScheduleFile(FileName(file)));
    ResetClock();
}

void Engine::Load()
{
    static_cast<void>(m_scheduler->SetEnabled(true));
    CheckLoaded();
}

void Engine::Reload()
{
    static_cast<void>(m_scheduler->Reload());
    CheckLoaded();
}

void Engine::FindEarly()
{
    m_scheduler->CheckFarActions();
    if (m_scheduler->EarlyActions().Size() != Lines())
        throw std::runtime_error("bench: not every action is early: " + m_file.toStdString());
    m_clock.Advance_s(1);
}

void Engine::FarPass()
{
    if (++m_passes % PASSES_UNTIL_NOON == 0)
        ResetClock();
    m_clock.Advance_s(FAR_INTERVAL_S);
    m_scheduler->CheckFarActions();
}

void Engine::EarlyPass()
{
    m_scheduler->CheckEarlyActions();
}

void Engine::ResetClock()
{
    m_clock.SetLocal(NOON);
}

int Engine::Lines() const
{
    return m_file.section(QLatin1Char('-'), -1).toInt();
}

void Engine::CheckLoaded() const
{
    if (m_scheduler->FarActions().Size() != Lines())
        throw std::runtime_error("bench: not every line was loaded: " + m_file.toStdString());
}
