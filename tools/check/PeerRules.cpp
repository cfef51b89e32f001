#include "Patience.h"
#include "Rules.h"
#include "engine/TaskRequests.h"

void Rules::FindAbsentPeers(const Workspace& workspace, const std::vector<Entry>& entries, const QStringList& absent,
                            Findings& findings)
{
    TaskRequests peers(workspace);
    for (const Entry& entry : entries)
    {
        if (entry.GetAction() == nullptr)
            continue;
        const Patience patience(peers, entry);
        for (const QString& peer : absent)
        {
            if (patience.Peers().contains(peer))
                findings.Add({entry.line.number, FindingKind::ABSENT_PEER, Entry::FieldName(ScheduleFields::FIELD_TASK),
                              QStringLiteral("asks the %1, which is not on the session bus").arg(peer),
                              QStringLiteral("start the service that answers for it: until then each request fails")});
        }
    }
}
