#include "Findings.h"

#include <utility>

namespace
{

// An input that goes wrong may do so thousands of times over.
constexpr qsizetype ENOUGH = 20000;

QByteArray m_findings;

} // namespace

void Findings::Add(const char* file, int line, const QByteArray& what)
{
    if (m_findings.size() < ENOUGH)
        m_findings += QByteArray(file) + ':' + QByteArray::number(line) + ": " + what + '\n';
}

QByteArray Findings::Take()
{
    return std::exchange(m_findings, {});
}
