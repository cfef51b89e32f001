#pragma once

#include "ear/Arrivals.h"
#include "ear/Onsets.h"

#include <QString>

#include <atomic>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

// Listens to a player whose output is a FIFO: takes the samples as they come, in a thread of its own, and remembers
// when each block came by the machine's calendar clock. Counts frames from the first one on.
class Ear final
{
public:
    struct Heard
    {
        qint64 begin;      // first frame
        qint64 end;        // behind the last one
        double at_ms;      // when the first frame was heard, since 1970, by the count of samples
        double arrived_ms; // when it really came
    };

    // Makes the FIFO, and listens. Throws std::runtime_error when there can be none. Keeps the samples of the last two
    // minutes.
    explicit Ear(const QString& fifo);
    ~Ear();

    Ear(const Ear&) = delete;
    Ear& operator=(const Ear&) = delete;

    // Stops listening: who writes gets an error, as from an output that is taken away. Nobody can open the FIFO for
    // writing until Listen.
    void TakeAway();
    void Listen();

    // All sounds so far, also one that has not ended.
    [[nodiscard]] std::vector<Heard> Sounds() const;

    // Those that have ended.
    [[nodiscard]] size_t EndedCount() const;

    [[nodiscard]] qint64 Frames() const;

    // The samples of those frames, as far as they are kept.
    [[nodiscard]] std::vector<Pcm::Sample> Samples(qint64 begin, qint64 end) const;

    // 0 to 1, see Pcm::Level.
    [[nodiscard]] double Level(qint64 begin, qint64 end) const { return Pcm::Level(Samples(begin, end)); }

private:
    void Run();
    // came_us: nothing for the rest of a block that has come before.
    void Take(const char* bytes, size_t size, std::optional<qint64> came_us);

    const QByteArray m_path;
    std::thread m_thread;
    std::atomic<bool> m_isEnding = false;

    mutable std::mutex m_mutex; // of all that follows
    Onsets m_onsets;
    Arrivals m_arrivals;
    std::vector<Pcm::Sample> m_samples;
    qint64 m_firstKept = 0;   // the frame that m_samples begins with
    std::vector<char> m_torn; // bytes of a frame that has not come as a whole
};
