#include "Lan.h"

#include "Log.h"
#include "Scheduler.h"
#include "peers/PeerCall.h"
#include "text/Parameter.h"

#include <NetworkManagerProxy.h>

namespace
{
const QString ENABLE_LAN = QStringLiteral("EnableLan");
const QString DISABLE_LAN = QStringLiteral("DisableLan");
} // namespace

Lan::Lan(const QString& enable)
    : PunctualTask(TASK_LAN, {})
    , m_enabled(Parameter::ToSwitch(enable, [&] {
        OZNA_LOG(LEVEL_WARNING, "Can't parse Lan enabled/disabled from parameters: '%s'. Using false.",
                 qPrintable(enable));
    }))
{
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Lan: %d", m_enabled);
}

bool Lan::Run()
{
    // DHCP needs none of the three texts of a fixed address.
    const QVariantList dhcp{true, QString(), QString(), QString()};
    return PeerCall::Send(Scheduler::m_networkManProxy, m_enabled ? ENABLE_LAN : DISABLE_LAN,
                          m_enabled ? dhcp : QVariantList())
        .Report(
            [&](const char* error) {
                OZNA_LOG(LEVEL_ERROR, "%s request error: %s\n", m_enabled ? "EnableLan(dhcp)" : "DisableLan", error);
            },
            [&](int status) { OZNA_LOG(LEVEL_ERROR, "EnableLan(%d) error: %d\n", m_enabled, status); },
            [&] { OZNA_LOG(LEVEL_TRACE, "TASK REQUESTED | Lan: %d", m_enabled); });
}
