#pragma once

class QDBusAbstractInterface;

// Gives a shared proxy another call time-out for the life of this object, and its earlier one back at the end.
class ProxyTimeout final
{
public:
    // proxy: not null, outlives this object.
    ProxyTimeout(QDBusAbstractInterface* proxy, int timeout_ms);
    ~ProxyTimeout();

    ProxyTimeout(const ProxyTimeout&) = delete;
    ProxyTimeout& operator=(const ProxyTimeout&) = delete;

private:
    QDBusAbstractInterface* const m_proxy;
    const int m_earlier_ms;
};
