#include "sound/Mailbox.h"

#include <QMetaObject>
#include <QObject>

Mailbox::Mailbox(QObject* receiver)
    : m_receiver(receiver)
{
}

void Mailbox::Post(std::function<void()> work)
{
    const std::lock_guard lock(m_mutex);
    if (m_receiver != nullptr)
        QMetaObject::invokeMethod(m_receiver, std::move(work), Qt::QueuedConnection);
}

void Mailbox::Close()
{
    const std::lock_guard lock(m_mutex);
    m_receiver = nullptr;
}
