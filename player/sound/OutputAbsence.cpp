#include "sound/OutputAbsence.h"

#include "sound/Frames.h"

#include <chrono>

namespace
{

using namespace std::chrono_literals;

// An output that comes back is still of use to a message so late, and to what went on when it left.
constexpr qint64 LATE_MS = 2'000;
constexpr int ABSENCE_S = 60;
// So long it may take for the first second of sound.
constexpr int BEGIN_S = 2;

} // namespace

OutputAbsence::OutputAbsence(std::function<qint64()> mixed)
    : m_mixed(std::move(mixed))
{
    connect(&m_timer, &QTimer::timeout, this, &OutputAbsence::Count);
}

void OutputAbsence::Begin()
{
    m_isOpen = false;
    if (m_timer.isActive())
        return;
    m_absent_s = 0;
    m_timer.start(1s);
}

void OutputAbsence::Return()
{
    m_isOpen = true;
    m_open_s = 0;
    m_mixedBefore = m_mixed();
}

void OutputAbsence::End()
{
    m_timer.stop();
}

void OutputAbsence::Count()
{
    ++m_absent_s;
    if (m_isOpen && m_mixed() - m_mixedBefore >= Frames::RATE)
        return End();
    if (!m_isOpen || ++m_open_s > BEGIN_S)
        Q_EMIT Lasts();
}

bool OutputAbsence::IsTooLong(const Piece& piece, bool hasBegun, qint64 now_ms) const
{
    if (hasBegun)
        return m_absent_s >= ABSENCE_S;
    if (piece.due_ms)
        return *piece.due_ms + LATE_MS < now_ms;
    return m_absent_s >= (piece.place == Piece::Place::MESSAGE ? LATE_MS / 1000 : ABSENCE_S);
}
