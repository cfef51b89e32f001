#include "WaitingUpdates.h"

#include "process/BusReading.h"

#include <QDBusConnection>

// The mark queues up behind the messages that wait for the event loop, and is back when they have been handled.
int WaitingUpdates::Mark()
{
    // Where the bus does not answer, what it has sent and the event loop has not got yet is not among them.
    static_cast<void>(BusReading::CatchUp(QDBusConnection::sessionBus()));
    const int mark = ++m_mark;
    const auto onBack = [this, mark] {
        if (m_covered == mark)
            Uncover();
    };
    return QMetaObject::invokeMethod(&m_context, onBack, Qt::QueuedConnection) ? mark : NONE;
}
