#pragma once

#include <QByteArray>

// What was found wrong while an input was handled. Kept rather than thrown: the engine catches what its own code
// throws, and must not catch this.
namespace Findings
{

void Add(const char* file, int line, const QByteArray& what);

// All since the last call, one a line; empty when all was well.
QByteArray Take();

} // namespace Findings

// Notes a finding unless the condition holds. detail: a text for people, made only then.
#define EXPECT_THAT(condition, detail)                                                                                 \
    do                                                                                                                 \
    {                                                                                                                  \
        if (!(condition))                                                                                              \
            Findings::Add(__FILE__, __LINE__, QByteArray(#condition " is false: ") + (detail));                        \
    } while (false)

// The same for two values that should be equal, which QDebug has to know.
#define EXPECT_EQUAL(found, wanted)                                                                                    \
    do                                                                                                                 \
    {                                                                                                                  \
        const auto foundValue = (found);                                                                               \
        const auto wantedValue = (wanted);                                                                             \
        if (!(foundValue == wantedValue))                                                                              \
        {                                                                                                              \
            QString findingText;                                                                                       \
            QDebug(&findingText) << #found " is" << foundValue << "and not" << wantedValue;                            \
            Findings::Add(__FILE__, __LINE__, findingText.toUtf8());                                                   \
        }                                                                                                              \
    } while (false)
