// How long the rehearsal of a day of a hundred daily lines takes, and how much sooner it is done than a run of every
// pass. OZNA_DATA_DIR names the folder of the schedule and its playlists.

#include "engine/Rehearsal.h"
#include "engine/Workspace.h"

#include <QCoreApplication>
#include <QFile>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>

namespace
{

constexpr qint64 DAY_MS = 86400LL * 1000;
constexpr qint64 START_MS = 1709251200000; // 2024-03-01 00:00:00 UTC: changes of the clocks are to come

constexpr const char* ONE_DAY = "OneDay";
constexpr const char* ONE_DAY_EVERY_PASS = "OneDayEveryPass";

size_t Rehearse(bool everyPass)
{
    const QString folder = QFile::decodeName(qgetenv("OZNA_DATA_DIR"));
    const Workspace workspace(folder + QStringLiteral("/schedule/mixed-100.csv"),
                              folder + QStringLiteral("/playlists"));
    Rehearsal rehearsal(workspace, {START_MS, START_MS, START_MS + DAY_MS, everyPass});
    static_cast<void>(rehearsal.Run());
    return rehearsal.Events().size();
}

void Run(benchmark::State& state, bool everyPass)
{
    size_t events = 0;
    for ([[maybe_unused]] auto _ : state)
        events = Rehearse(everyPass);
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
    benchmark::RegisterBenchmark(ONE_DAY, Run, false)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(ONE_DAY_EVERY_PASS, Run, true)->Unit(benchmark::kMillisecond)->Iterations(1);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.ReportRatio() ? 0 : 1;
}
