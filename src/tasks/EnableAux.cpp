#include "EnableAux.h"

#include "Log.h"
#include "peers/SoundManager.h"
#include "text/Parameter.h"

EnableAux::EnableAux(const QString& enable)
    : PunctualTask(TASK_ENABLE_AUX, {})
    , m_enable(Parameter::ToSwitch(enable, [&] {
        NoteWarning(0,
                    OZNA_TELL(LEVEL_WARNING, "Can't parse EnableAux enable from parameters: '%s'. Using enable=FALSE.",
                              qPrintable(enable)));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | EnableAux(%d)", m_enable);
}

EnableAux::~EnableAux()
{
    if (!m_enable || !m_running)
        return;
    OZNA_LOG(LEVEL_NORMAL, "Scheduled Aux enabled running: stop it");
    if (SoundManager::StopPlay(SoundManager::SOURCE_AUX).IsAccepted())
        m_running = false;
    else
        OZNA_LOG(LEVEL_WARNING, "Impossible to disable scheduled aux");
}

bool EnableAux::Run()
{
    return m_enable ? RunOn() : RunOff();
}

// Both requests are judged by the status alone: a call that failed on the bus brings none, and counts as accepted.
bool EnableAux::RunOn() const
{
    OZNA_LOG(LEVEL_TRACE, "Requesting SoundManager()->PlayAux()");
    return SoundManager::PlayAux().ReportStatus(
        [](int status) { OZNA_LOG(LEVEL_NORMAL, "PlayAux() error: %d\n", status); },
        [&] { OZNA_LOG(LEVEL_NORMAL, "TASK REQUESTED | EnableAux(%d): 0", m_enable); });
}

bool EnableAux::RunOff() const
{
    OZNA_LOG(LEVEL_TRACE, "Requesting SoundManager()->StopPlay(aux)");
    return SoundManager::StopPlay(SoundManager::SOURCE_AUX)
        .ReportStatus([](int status) { OZNA_LOG(LEVEL_NORMAL, "StopPlay('aux') error: %d\n", status); },
                      [&] { OZNA_LOG(LEVEL_NORMAL, "TASK REQUESTED | EnableAux(%d): 0 (stop)", m_enable); });
}
