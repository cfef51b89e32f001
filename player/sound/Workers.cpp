#include "sound/Workers.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <thread>

namespace
{

using Time = std::chrono::steady_clock::time_point;

constexpr std::chrono::seconds PATIENCE{2};

struct Work
{
    Time since;
    std::function<void()> function;
};

} // namespace

struct Workers::Shared
{
    std::mutex mutex;
    std::condition_variable change;
    std::deque<Work> waiting;
    std::list<Time> running;
    int threads = 0;
    int idle = 0;
    int limit = 0;
    bool isClosed = false;

    void Serve();
    static void Run(const std::shared_ptr<Shared>& shared, std::function<void()> work);
};

void Workers::Shared::Serve()
{
    std::unique_lock lock(mutex);
    while (true)
    {
        ++idle;
        change.wait(lock, [this] { return isClosed || !waiting.empty(); });
        --idle;
        if (waiting.empty())
            break;
        Work work = std::move(waiting.front());
        waiting.pop_front();
        const auto place = running.insert(running.end(), work.since);
        lock.unlock();
        work.function();
        work.function = nullptr;
        lock.lock();
        running.erase(place);
    }
    --threads;
    change.notify_all();
}

Workers::Workers(int threads)
    : m_shared(std::make_shared<Shared>())
{
    m_shared->limit = threads;
}

Workers::~Workers()
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->isClosed = true;
    m_shared->change.notify_all();
    m_shared->change.wait_for(lock, PATIENCE, [this] { return m_shared->threads == 0; });
}

void Workers::Shared::Run(const std::shared_ptr<Shared>& shared, std::function<void()> work)
{
    const std::lock_guard lock(shared->mutex);
    shared->waiting.push_back({std::chrono::steady_clock::now(), std::move(work)});
    if (shared->idle < static_cast<int>(shared->waiting.size()) && shared->threads < shared->limit)
    {
        ++shared->threads;
        std::thread([shared] { shared->Serve(); }).detach();
    }
    shared->change.notify_one();
}

void Workers::Run(std::function<void()> work)
{
    Shared::Run(m_shared, std::move(work));
}

Workers::Runner Workers::MakeRunner() const
{
    return [shared = m_shared](std::function<void()> work) { Shared::Run(shared, std::move(work)); };
}

qint64 Workers::Behind_ms() const
{
    const std::lock_guard lock(m_shared->mutex);
    Time oldest = Time::max();
    for (const Time since : m_shared->running)
        oldest = std::min(oldest, since);
    if (!m_shared->waiting.empty())
        oldest = std::min(oldest, m_shared->waiting.front().since);
    if (oldest == Time::max())
        return 0;
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - oldest).count();
}
