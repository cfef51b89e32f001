#include "CallLog.h"

QList<QVariantMap> CallLog::ToMaps() const
{
    QList<QVariantMap> maps;
    maps.reserve(m_calls.size());
    for (const Call& call : m_calls)
        maps.append({{QStringLiteral("interface"), call.interface},
                     {QStringLiteral("method"), call.method},
                     {QStringLiteral("signature"), call.signature},
                     {QStringLiteral("arguments"), call.arguments},
                     {QStringLiteral("time_ms"), call.time.toMSecsSinceEpoch()}});
    return maps;
}
