#pragma once

#include "check/Findings.h"

// What a check found, as text.
namespace CheckText
{

struct Result
{
    QString file; // as the user named it
    int lines;    // how many it has
    const Findings& findings;
};

// A line for each finding, as compilers tell them, and one that counts them.
[[nodiscard]] QString Lines(const Result& result);

// One object: "file", "findings", and the counts "lines", "errors", "warnings".
[[nodiscard]] QString Json(const Result& result);

} // namespace CheckText
