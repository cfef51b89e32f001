#pragma once

#include <QtGlobal>

#include <algorithm>

// A gain that moves to its target in a straight line, frame by frame.
class Ramp final
{
public:
    explicit Ramp(double value)
        : m_value(value)
        , m_target(value)
    {
    }

    // Reaches the target that many frames from here; at once with 0. A ramp to the same target goes on as it is.
    void MoveTo(double target, qint64 frames)
    {
        if (target == m_target && (frames > 0 || m_left == 0))
            return;
        m_target = target;
        m_left = std::max<qint64>(frames, 0);
        if (m_left == 0)
            m_value = target;
    }

    // The gain of the frame that comes now.
    double Next()
    {
        const double value = m_value;
        if (m_left > 0)
            m_value = --m_left == 0 ? m_target : m_value + (m_target - m_value) / static_cast<double>(m_left + 1);
        return value;
    }

    [[nodiscard]] double Target() const { return m_target; }
    // Frames until the target is reached.
    [[nodiscard]] qint64 Left() const { return m_left; }

private:
    double m_value;
    double m_target;
    qint64 m_left = 0;
};
