#include "Lan.h"

#include "Log.h"
#include "peers/NetworkManager.h"
#include "text/Parameter.h"

Lan::Lan(const QString& enable)
    : PunctualTask(TASK_LAN, {})
    , m_enabled(Parameter::ToSwitch(enable, [&] {
        NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse Lan enabled/disabled from parameters: '%s'. Using false.",
                                 qPrintable(enable)));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Lan: %d", m_enabled);
}

bool Lan::Run()
{
    const PeerReply reply = m_enabled ? NetworkManager::EnableLan() : NetworkManager::DisableLan();
    return reply.Report(
        [&](const char* error) {
            OZNA_LOG(LEVEL_ERROR, "%s request error: %s\n", m_enabled ? "EnableLan(dhcp)" : "DisableLan", error);
        },
        [&](int status) { OZNA_LOG(LEVEL_ERROR, "EnableLan(%d) error: %d\n", m_enabled, status); },
        [&] { OZNA_LOG(LEVEL_TRACE, "TASK REQUESTED | Lan: %d", m_enabled); });
}
