#pragma once

#include <QString>

struct RehearsalResult;

// A line of the schedule on a page.
namespace LineHtml
{

// Its text, as code; empty where there is no such line. number: counted from 1.
[[nodiscard]] QString Source(const RehearsalResult& run, int number);

} // namespace LineHtml
