#include "Ear.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int PATIENCE_MS = 20; // in which a request to end is seen
constexpr size_t READ_SIZE = 4096;
constexpr size_t KEPT = size_t{120} * Pcm::RATE * Pcm::CHANNELS;
constexpr size_t FRAME_SIZE = Pcm::CHANNELS * sizeof(Pcm::Sample);
constexpr double US_PER_MS = 1000;

qint64 Now_us()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace

Ear::Ear(const QString& fifo)
    : m_path(QFile::encodeName(fifo))
{
    if (::mkfifo(m_path.constData(), S_IRUSR | S_IWUSR) != 0 && errno != EEXIST)
        throw std::runtime_error(m_path.toStdString() + ": " + std::strerror(errno));
    Listen();
}

Ear::~Ear()
{
    TakeAway();
}

void Ear::TakeAway()
{
    m_isEnding = true;
    if (m_thread.joinable())
        m_thread.join();
}

void Ear::Listen()
{
    TakeAway();
    m_isEnding = false;
    m_thread = std::thread([this] { Run(); });
}

void Ear::Run()
{
    const int file = ::open(m_path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        qFatal("cannot listen to %s: %s", m_path.constData(), std::strerror(errno));
    bool isOpen = false;      // whether somebody writes
    bool isWithinOne = false; // what comes now may be the rest of a block, which tells nothing of time
    std::array<char, READ_SIZE> bytes{};
    while (!m_isEnding)
    {
        pollfd waiting{file, POLLIN, 0};
        ::poll(&waiting, 1, PATIENCE_MS);
        const ssize_t size = ::read(file, bytes.data(), bytes.size());
        if (size > 0)
            Take(bytes.data(), static_cast<size_t>(size), isWithinOne ? std::nullopt : std::optional(Now_us()));
        else if (size == 0 && isOpen)
        {
            const std::lock_guard lock(m_mutex);
            m_arrivals.Break();
            m_torn.clear();
        }
        else if (size == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1)); // a poll does not wait while nobody writes
        isOpen = size != 0;
        isWithinOne = size == static_cast<ssize_t>(bytes.size());
    }
    ::close(file);
    const std::lock_guard lock(m_mutex);
    m_arrivals.Break();
    m_torn.clear();
}

void Ear::Take(const char* bytes, size_t size, std::optional<qint64> came_us)
{
    const std::lock_guard lock(m_mutex);
    m_torn.insert(m_torn.end(), bytes, bytes + size);
    const size_t whole = m_torn.size() / FRAME_SIZE * FRAME_SIZE;
    std::vector<Pcm::Sample> samples(whole / sizeof(Pcm::Sample));
    std::memcpy(samples.data(), m_torn.data(), whole);
    m_torn.erase(m_torn.begin(), m_torn.begin() + static_cast<std::ptrdiff_t>(whole));
    if (came_us)
        m_arrivals.Add(m_onsets.Frames(), *came_us);
    m_onsets.Feed(samples);
    m_samples.insert(m_samples.end(), samples.begin(), samples.end());
    // Dropped in large pieces, so that little is moved.
    if (m_samples.size() > 2 * KEPT)
    {
        m_samples.erase(m_samples.begin(), m_samples.begin() + KEPT);
        m_firstKept += static_cast<qint64>(KEPT / Pcm::CHANNELS);
    }
}

std::vector<Ear::Heard> Ear::Sounds() const
{
    const std::lock_guard lock(m_mutex);
    const std::vector<Onsets::Sound> sounds = m_onsets.All();
    std::vector<Heard> heard(sounds.size());
    std::ranges::transform(sounds, heard.begin(), [this](const Onsets::Sound& sound) {
        return Heard{sound.begin, sound.end,
                     static_cast<double>(m_arrivals.LineAt_us(sound.begin).value_or(0)) / US_PER_MS,
                     static_cast<double>(m_arrivals.ArrivalAt_us(sound.begin).value_or(0)) / US_PER_MS};
    });
    return heard;
}

size_t Ear::EndedCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_onsets.Ended().size();
}

qint64 Ear::Frames() const
{
    const std::lock_guard lock(m_mutex);
    return m_onsets.Frames();
}

std::vector<Pcm::Sample> Ear::Samples(qint64 begin, qint64 end) const
{
    const std::lock_guard lock(m_mutex);
    const auto place = [this](qint64 frame) {
        const qint64 kept = (frame - m_firstKept) * Pcm::CHANNELS;
        return m_samples.begin() + std::clamp<qint64>(kept, 0, static_cast<qint64>(m_samples.size()));
    };
    return {place(begin), std::max(place(begin), place(end))};
}
