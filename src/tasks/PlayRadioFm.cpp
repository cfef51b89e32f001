#include "PlayRadioFm.h"

#include "Log.h"
#include "peers/SoundManager.h"

namespace
{

template <typename OnInvalid> double ParseFrequency(const QString& text, OnInvalid onInvalid)
{
    bool isNumber = false;
    const double frequency = text.toDouble(&isNumber);
    if (isNumber)
        return frequency;
    onInvalid();
    return 0;
}

PeerReply SwitchOn()
{
    OZNA_LOG(LEVEL_TRACE, "Requesting SoundManager()->PlayRadioFm()");
    return SoundManager::PlayRadioFm();
}

} // namespace

PlayRadioFm::PlayRadioFm(const QString& frequency)
    : PunctualTask(TASK_PLAY_RADIO_FM, {})
    , m_frequencyMHz(ParseFrequency(frequency, [&] {
        NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse RadioFm frequency from parameters: '%s'. Using 0.",
                                 qPrintable(frequency)));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | PlayRadioFm: %.2f", m_frequencyMHz);
}

PlayRadioFm::~PlayRadioFm()
{
    if (!m_running)
        return;
    OZNA_LOG(LEVEL_NORMAL, "Scheduled Radio %.2f running: stop it", m_frequencyMHz);
    if (SoundManager::StopPlay(SoundManager::SOURCE_RADIO_FM).IsAccepted())
        m_running = false;
    else
        OZNA_LOG(LEVEL_WARNING, "Impossible to stop scheduled radiofm");
}

bool PlayRadioFm::Run()
{
    if (m_frequencyMHz == 0.0)
        return RunStop();
    return SwitchOn().Report(
        [](const char* error) { OZNA_LOG(LEVEL_NORMAL, "PlayRadioFm() request error: %s", error); },
        [](int status) { OZNA_LOG(LEVEL_ERROR, "PlayRadioFm() error: %d\n", status); },
        [&] {
            OZNA_LOG(LEVEL_TRACE, "TASK REQUESTED | PlayRadioFm: enable radio. Now set frequency...");
            SetFrequency();
        });
}

// Judged by the status alone, like the tuning: a call that failed on the bus brings none, and counts as accepted.
bool PlayRadioFm::RunStop() const
{
    return SoundManager::StopPlay(SoundManager::SOURCE_RADIO_FM)
        .ReportStatus([](int status) { OZNA_LOG(LEVEL_NORMAL, "StopPlay('radiofm') error: %d\n", status); },
                      [] { OZNA_LOG(LEVEL_NORMAL, "TASK REQUESTED | PlayRadioFm(radiofm): 0 (stop)"); });
}

bool PlayRadioFm::SetFrequency() const
{
    OZNA_LOG(LEVEL_TRACE, "Requesting SoundManager()->RadioFmSetFrequency(%.2f)", m_frequencyMHz);
    return SoundManager::SetRadioFmFrequency(m_frequencyMHz)
        .ReportStatus(
            [&](int status) { OZNA_LOG(LEVEL_ERROR, "RadioFmSetFrequency(%.2f) error: %d\n", m_frequencyMHz, status); },
            [&] { OZNA_LOG(LEVEL_TRACE, "TASK REQUESTED | PlayRadioFm/SetFrequency: %.2f", m_frequencyMHz); });
}
