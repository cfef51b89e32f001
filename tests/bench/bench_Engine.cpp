// How long the engine takes to load a schedule, and for its passes, by the number of lines.

#include "Engine.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <string>

namespace
{

constexpr int MOST_LINES = 1'000'000;

Engine* engine = nullptr;

QString File(const char* kind, const benchmark::State& state)
{
    return QStringLiteral("%1-%2").arg(QLatin1String(kind)).arg(state.range(0));
}

void Load(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
    {
        state.PauseTiming();
        engine->Choose(File("mixed", state));
        state.ResumeTiming();
        engine->Load();
    }
}

void Reload(benchmark::State& state)
{
    engine->Choose(File("mixed", state));
    engine->Load();
    for ([[maybe_unused]] auto _ : state)
        engine->Reload();
}

// Slow passes are measured once: with the load before them.
void FarPass(benchmark::State& state, const char* kind)
{
    static QString loaded;
    const QString file = File(kind, state);
    if (loaded != file)
    {
        engine->Choose(file);
        engine->Load();
        engine->FarPass();
        loaded = file;
    }
    for ([[maybe_unused]] auto _ : state)
        engine->FarPass();
}

void EarlyPass(benchmark::State& state)
{
    engine->Choose(File("early", state));
    engine->Load();
    engine->FindEarly();
    for ([[maybe_unused]] auto _ : state)
        engine->EarlyPass();
}

} // namespace

// The greatest number of lines may follow the options.
int main(int argc, char* argv[])
try
{
    const QCoreApplication application(argc, argv);
    Engine only;
    engine = &only;
    benchmark::Initialize(&argc, argv);
    const int most = argc > 1 ? std::stoi(argv[1]) : MOST_LINES;
    // From short to long: what a long schedule has taken and given back makes what follows slower.
    for (int lines = 100; lines <= most; lines *= 10)
    {
        benchmark::RegisterBenchmark("Load", Load)->Arg(lines);
        benchmark::RegisterBenchmark("Reload", Reload)->Arg(lines);
        for (const char* const kind : {"none", "hundredth", "all", "mixed"})
            benchmark::RegisterBenchmark((std::string("FarPass/") + kind).c_str(), FarPass, kind)->Arg(lines);
    }
    benchmark::RegisterBenchmark("EarlyPass", EarlyPass)->Arg(0)->Arg(10)->Arg(1000);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
