#pragma once

#include "Arrivals.h"
#include "Onsets.h"

#include <QString>

#include <mutex>
#include <vector>

struct _GstBuffer;
struct _GstElement;

// Listens to what the sound server hands to one of its outputs.
class MonitorEar final
{
public:
    MonitorEar() = default;
    ~MonitorEar();

    MonitorEar(const MonitorEar&) = delete;
    MonitorEar& operator=(const MonitorEar&) = delete;

    // Begins to listen. sink: the output as the server names it, empty for its default. Empty when it does, else what
    // is wrong. Waits for the server for up to 3 s.
    [[nodiscard]] QString Start(const QString& sink);

    // When each sound so far began, in milliseconds since 1970.
    [[nodiscard]] std::vector<double> Begins_ms() const;

private:
    static void OnSamples(_GstElement* sink, _GstBuffer* buffer, void* pad, MonitorEar* ear);
    void Take(std::span<const Pcm::Sample> samples, bool isBehindALoss);

    _GstElement* m_pipeline = nullptr;
    mutable std::mutex m_mutex; // of what follows: the samples come in a thread of the library's
    Onsets m_onsets;
    Arrivals m_arrivals;
};
