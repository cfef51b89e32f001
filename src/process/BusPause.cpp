#include "BusPause.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

namespace
{
constexpr int LONGEST_WAIT_MS = 1000;
}

BusPause::BusPause(const QDBusConnection& bus)
    : m_rests(std::make_shared<QSemaphore>())
    , m_goesOn(std::make_shared<QSemaphore>())
{
    // The one object of the library's thread that can be had.
    QDBusConnectionInterface* const library = bus.interface();
    if (library == nullptr)
        return;
    const auto rest = [rests = m_rests, goesOn = m_goesOn] {
        rests->release();
        goesOn->acquire();
    };
    if (QMetaObject::invokeMethod(library, rest, Qt::QueuedConnection))
        static_cast<void>(m_rests->tryAcquire(1, LONGEST_WAIT_MS));
}

BusPause::~BusPause()
{
    m_goesOn->release();
}
