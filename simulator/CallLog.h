#pragma once

#include "Call.h"

#include <QList>
#include <QVariantMap>

// The calls that the simulated peers have received, in order.
class CallLog final
{
public:
    void Add(const Call& call) { m_calls.append(call); }
    void Clear() { m_calls.clear(); }

    // Each call as it travels on the bus: interface (s), method (s), signature (s), arguments (av), time_ms (x).
    [[nodiscard]] QList<QVariantMap> ToMaps() const;

private:
    QList<Call> m_calls;
};
