#pragma once

#include <QtGlobal>

#include <functional>
#include <mutex>

class QObject;

// The way from the threads of the sound to the thread of its owner, which outlives neither of them for sure.
class Mailbox final
{
public:
    // What is posted runs in the thread of the receiver.
    explicit Mailbox(QObject* receiver);
    Q_DISABLE_COPY_MOVE(Mailbox)

    // By any thread; never waits for the work. Dropped after Close, and when the receiver goes before it ran.
    void Post(std::function<void()> work);

    // By the receiver, before it goes.
    void Close();

private:
    std::mutex m_mutex;
    QObject* m_receiver;
};
