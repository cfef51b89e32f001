#include "Amplifiers.h"

#include "Log.h"
#include "peers/SoundManager.h"
#include "text/Parameter.h"

Amplifiers::Amplifiers(const QString& mask)
    : PunctualTask(TASK_AMPLIFIERS, {})
    , m_mask(Parameter::ToInt(mask, 0, [&] {
        NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse Amplifiers mask from parameters: '%s'. Using 0.",
                                 qPrintable(mask)));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Amplifiers: %d", m_mask);
}

bool Amplifiers::Run()
{
    const auto mask = static_cast<unsigned int>(m_mask);
    return SoundManager::SetAmplifiers(static_cast<uchar>(mask & 0xffU))
        .Report(
            [&](const char* error) { OZNA_LOG(LEVEL_ERROR, "SetAmplifiers(0x%02x) request error: %s", mask, error); },
            // The text names another method, by requirement.
            [&](int status) { OZNA_LOG(LEVEL_NORMAL, "SetIntensity(%d) error: %d\n", m_mask, status); },
            [&] { OZNA_LOG(LEVEL_TRACE, "TASK REQUESTED | Amplifiers: 0x%02x", mask); });
}
