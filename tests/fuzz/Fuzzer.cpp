#include "Findings.h"
#include "Target.h"

#include <QCoreApplication>

#include <sanitizer/lsan_interface.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What libFuzzer's main calls.

namespace
{

// The bus library's thread allocates whenever it likes, so that libFuzzer would suspect every input of a leak, and
// looking takes longer than handling many an input.
constexpr unsigned int INPUTS_A_LEAK_CHECK = 1000;

void CheckForLeaks()
{
    static unsigned int inputs = 0;
    if (++inputs % INPUTS_A_LEAK_CHECK == 0 && __lsan_do_recoverable_leak_check() != 0)
        Findings::Add(__FILE__, __LINE__, "one of the latest inputs leaks what is reported above");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);            // NOLINT(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size); // NOLINT(readability-identifier-naming)

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    // Whoever starts it may have a session bus.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    static const QCoreApplication application(*argc, *argv);
    Target::SetUp();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Target::Run(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    CheckForLeaks();
    const QByteArray findings = Findings::Take();
    if (findings.isEmpty())
        return 0;
    std::fputs(findings.constData(), stderr);
    std::abort();
}
