#include "Findings.h"

#include <algorithm>
#include <tuple>

QString Finding::Sentence() const
{
    // The daemon's own words may be a sentence.
    const QString what = text.endsWith(u'.') ? text.chopped(1) : text;
    return field + QStringLiteral(": ") + what + QStringLiteral("; ") + advice;
}

void Findings::Sort()
{
    std::ranges::stable_sort(m_all, [](const Finding& left, const Finding& right) {
        return std::tie(left.line, left.kind) < std::tie(right.line, right.kind);
    });
}

int Findings::Errors() const
{
    return static_cast<int>(
        std::ranges::count_if(m_all, [](const Finding& finding) { return FindingKinds::Row(finding.kind).isError; }));
}
