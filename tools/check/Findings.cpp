#include "Findings.h"

#include <algorithm>
#include <tuple>

QString Finding::Sentence() const
{
    // The daemon's own words may be a sentence.
    const QString what = text.endsWith(u'.') ? text.chopped(1) : text;
    const QString log = logged.isEmpty() ? QString() : QStringLiteral(" (the daemon logs \"%1\")").arg(logged);
    return field + QStringLiteral(": ") + what + QStringLiteral("; ") + advice + log;
}

void Findings::Add(Finding finding)
{
    if (!m_closed.contains(finding.line))
        m_all.push_back(std::move(finding));
}

void Findings::Sort()
{
    std::ranges::stable_sort(m_all, [](const Finding& left, const Finding& right) {
        return std::tie(left.line, left.kind) < std::tie(right.line, right.kind);
    });
}

int Findings::Errors() const
{
    return static_cast<int>(std::ranges::count_if(m_all, IsError));
}
