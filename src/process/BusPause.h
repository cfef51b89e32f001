#pragma once

#include <QSemaphore>

#include <memory>

class QDBusConnection;

// Keeps the bus library from handling what arrives for as long as this object lives: it does so on a thread of its own.
class BusPause final
{
public:
    // Waits until the library has come to rest; does nothing without a connection. A library that is busy for too long
    // is left alone.
    explicit BusPause(const QDBusConnection& bus);
    ~BusPause();

    BusPause(const BusPause&) = delete;
    BusPause& operator=(const BusPause&) = delete;

private:
    const std::shared_ptr<QSemaphore> m_rests;
    const std::shared_ptr<QSemaphore> m_goesOn;
};
