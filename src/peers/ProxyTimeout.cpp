#include "ProxyTimeout.h"

#include <QDBusAbstractInterface>

ProxyTimeout::ProxyTimeout(QDBusAbstractInterface* proxy, int timeout_ms)
    : m_proxy(proxy)
    , m_earlier_ms(proxy->timeout())
{
    m_proxy->setTimeout(timeout_ms);
}

ProxyTimeout::~ProxyTimeout()
{
    m_proxy->setTimeout(m_earlier_ms);
}
