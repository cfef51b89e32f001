// How long the rehearsal of a hundred daily lines takes, and how much sooner it is done than a run of every pass.

#include "HundredLines.h"
#include "engine/Rehearsal.h"
#include "engine/Workspace.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>

namespace
{

constexpr qint64 DAY_MS = 86400LL * 1000;
constexpr qint64 START_MS = 1709251200000; // 2024-03-01 00:00:00 UTC: changes of the clocks are to come

constexpr const char* ONE_DAY = "OneDay";
constexpr const char* ONE_DAY_EVERY_PASS = "OneDayEveryPass";

const HundredLines& Schedule()
{
    static const HundredLines schedule;
    return schedule;
}

size_t Rehearse(qint64 days, bool everyPass)
{
    const Workspace workspace(Schedule().Path(), Schedule().Playlists());
    Rehearsal rehearsal(workspace, {START_MS, START_MS, START_MS + days * DAY_MS, everyPass});
    static_cast<void>(rehearsal.Run());
    return rehearsal.Events().size();
}

void Run(benchmark::State& state, qint64 days, bool everyPass)
{
    size_t events = 0;
    for ([[maybe_unused]] auto _ : state)
        events = Rehearse(days, everyPass);
    state.counters["events"] = static_cast<double>(events);
}

// The usual table, and below it the ratio of the two that do the same.
class RatioReporter final : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<benchmark::BenchmarkReporter::Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const auto& run : runs)
            m_runs[run.run_name.function_name] = {run.GetAdjustedCPUTime(), run.counters.at("events").value};
    }

    // False when the two did not come to the same number of events.
    [[nodiscard]] bool ReportRatio() const
    {
        if (!m_runs.contains(ONE_DAY) || !m_runs.contains(ONE_DAY_EVERY_PASS))
            return true; // others were asked for
        const Result& skipping = m_runs.at(ONE_DAY);
        const Result& everyPass = m_runs.at(ONE_DAY_EVERY_PASS);
        std::printf("a day takes %.0f times as long with every pass\n", everyPass.time / skipping.time);
        return skipping.events == everyPass.events;
    }

private:
    struct Result
    {
        double time;
        double events;
    };

    std::map<std::string, Result> m_runs;
};

} // namespace

int main(int argc, char* argv[])
{
    Workspace::PrepareProcess();
    const QCoreApplication application(argc, argv);
    benchmark::RegisterBenchmark("Week", Run, 7, false)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Year", Run, 365, false)->Unit(benchmark::kMillisecond)->Iterations(1);
    benchmark::RegisterBenchmark(ONE_DAY, Run, 1, false)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(ONE_DAY_EVERY_PASS, Run, 1, true)->Unit(benchmark::kMillisecond)->Iterations(1);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.ReportRatio() ? 0 : 1;
}
