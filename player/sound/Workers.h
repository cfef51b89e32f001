#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

// Threads for what may wait for a disk, a network or a device, so that neither the event loop nor the mixer does.
class Workers final
{
public:
    // How many run at a time. With one, the work is done in order.
    explicit Workers(int threads);

    // Waits a moment for work that runs. What hangs then is left behind, with all that it holds.
    ~Workers();
    Q_DISABLE_COPY_MOVE(Workers)

    // By any thread.
    void Run(std::function<void()> work);

    // Runs work for who may outlive this object.
    using Runner = std::function<void(std::function<void()> work)>;
    [[nodiscard]] Runner MakeRunner() const;

    // How long the oldest work has been running or waiting, in ms; 0 when there is none.
    [[nodiscard]] qint64 Behind_ms() const;

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
};
