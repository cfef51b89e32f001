#include "Progress.h"

#include "Terminal.h"

#include <QString>

#include <csignal>
#include <utility>

namespace
{

constexpr qint64 PATIENCE_MS = 1000;
constexpr int WIDTH = 40;
constexpr int WHOLE = 100; // per cent

constexpr int NOTHING = -1;

int m_shown = NOTHING; // per cent

volatile std::sig_atomic_t m_interrupted = 0;

// What a second Ctrl-C gets.
void (*m_earlierHandler)(int) = SIG_DFL;

// Runs in a signal context.
void OnInterrupt(int sig)
{
    m_interrupted = 1;
    static_cast<void>(std::signal(sig, m_earlierHandler));
}

} // namespace

Progress::Progress()
{
    m_since.start();
    // Where it cannot be caught it ends the tool at once.
    const auto earlier = std::signal(SIGINT, OnInterrupt);
    if (earlier != SIG_ERR && earlier != OnInterrupt)
        m_earlierHandler = earlier;
}

Progress::~Progress()
{
    Hide();
}

void Progress::Hide()
{
    if (std::exchange(m_shown, NOTHING) != NOTHING)
        Terminal::PrintError(QStringLiteral("\r\x1b[K"));
}

bool Progress::Show(double part)
{
    const int done = static_cast<int>(part * WHOLE);
    if (done != m_shown && m_since.hasExpired(PATIENCE_MS) && Terminal::IsErrorTerminal())
    {
        m_shown = done;
        const int length = done * WIDTH / WHOLE;
        Terminal::PrintError(
            QStringLiteral("\r[%1%2] %3 %").arg(QString(length, u'='), QString(WIDTH - length, u' ')).arg(done, 3));
    }
    return !IsInterrupted();
}

bool Progress::IsInterrupted()
{
    return m_interrupted != 0;
}
