#include "CpuFreq.h"

#include "Log.h"
#include "peers/CpuFreqManager.h"

CpuFreq::CpuFreq(const QString& frequency)
    : PunctualTask(TASK_SET_CPU_FREQ, {})
    , m_freqMHz(FREQUENCY_MHZ)
{
    NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse Cpu frequency from parameters: '%s'. Using 456.",
                             qPrintable(frequency)));
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | CpuFreq: %d", m_freqMHz);
}

bool CpuFreq::Run()
{
    return CpuFreqManager::SetFreq(m_freqMHz).Report(
        [&](const char* error) { OZNA_LOG(LEVEL_ERROR, "SetFreq(%d) request error: %s", m_freqMHz, error); },
        [&](int status) { OZNA_LOG(LEVEL_NORMAL, "SetFreq(%d) error: %d\n", m_freqMHz, status); },
        [&] { OZNA_LOG(LEVEL_TRACE, "TASK EXECUTED | CpuFreq: %d", m_freqMHz); });
}
