// Runs each step whose instructions are counted once, in a part of callgrind's output that has its name.

#include "Engine.h"

#include <QCoreApplication>

#include <exception>
#include <functional>
#include <valgrind/callgrind.h>

namespace
{

void Count(const char* name, const std::function<void()>& step)
{
    step(); // what happens only once, such as the linking of a function, is no part of it
    CALLGRIND_ZERO_STATS;
    step();
    CALLGRIND_DUMP_STATS_AT(name);
}

} // namespace

int main(int argc, char* argv[])
try
{
    const QCoreApplication application(argc, argv);
    Engine engine;
    for (const char* const file : {"mixed-100", "mixed-1000"})
    {
        Count(file, [&] {
            engine.Choose(QString::fromLatin1(file));
            engine.Load();
        });
    }
    engine.Choose(QStringLiteral("all-1000"));
    engine.Load();
    Count("far-pass", [&] { engine.FarPass(); });
    engine.Choose(QStringLiteral("early-10"));
    engine.Load();
    engine.FindEarly();
    Count("early-pass", [&] { engine.EarlyPass(); });
    return 0;
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
