"""The engine alone, by Google Benchmark."""
import json
import subprocess
import tempfile
from pathlib import Path

import processes
import schedules
from table import number

FAR = {"none": "none due", "hundredth": "1 in 100 due", "all": "all due", "mixed": "all due, every kind"}


def benchmark(program, folder, *options):
    """The processor time of each benchmark, in nanoseconds."""
    out = folder / "out.json"
    environment = processes.ENVIRONMENT | {"OZNA_DATA_DIR": str(folder), "OZNA_CONFIG_FILE": str(folder / "ozna.ini")}
    subprocess.run([processes.BUILD / "tests" / program, f"--benchmark_out={out}", "--benchmark_min_time=0.1",
                    *options], env=environment, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    found = json.loads(out.read_text())["benchmarks"]
    unit = {"ns": 1, "us": 1e3, "ms": 1e6}
    return {one["name"]: one["cpu_time"] * unit[one["time_unit"]] for one in found}


def run(quick, pattern, kinds, extra=()):
    sizes = [100 * 10**power for power in range(3 if quick else 5)]
    with tempfile.TemporaryDirectory() as name:
        folder = schedules.make_data(Path(name) / "data")
        (folder / "ozna.ini").write_text("[GENERAL]\nServerIp=127.0.0.1\n")
        for kind, size in [(kind, size) for kind in kinds for size in sizes] + list(extra):
            schedules.write(folder, kind, size)
        times = benchmark("bench_Engine", folder, f"--benchmark_filter={pattern}", str(sizes[-1]))
    return sizes, times


def load(quick):
    sizes, times = run(quick, "^(Load|Reload)/", ["mixed"])
    rows = [["Lines, of every kind", "load, µs a line", "reload, µs a line"]]
    for size in sizes:
        rows.append([f"{size:,}", *(number(times[f"{name}/{size}"] / size / 1e3) for name in ("Load", "Reload"))])
    return rows


def far_passes(quick):
    sizes, times = run(quick, "^FarPass/", FAR)
    rows = [["Far pass, µs, lines", *FAR.values()]]
    for size in sizes:
        rows.append([f"{size:,}", *(number(times[f"FarPass/{kind}/{size}"] / 1e3) for kind in FAR)])
    return rows


def early_passes(quick):
    entries = (0, 10, 1000)
    _, times = run(quick, "^EarlyPass/", [], [("early", count) for count in entries])
    return [["Early pass, entries", "µs"], *([f"{count:,}", number(times[f"EarlyPass/{count}"] / 1e3)]
                                           for count in entries)]


def every_pass(_):
    """A rehearsed day, and the same with every pass of the timers; the program compares what they come to."""
    with tempfile.TemporaryDirectory() as name:
        folder = schedules.make_data(Path(name) / "data")
        schedules.write(folder, "mixed", 100)
        times = benchmark("bench_Rehearsal", folder)
    skipping, every = (next(time for name, time in times.items() if name.split("/")[0] == wanted)
                       for wanted in ("OneDay", "OneDayEveryPass"))
    return [["A day of 100 lines, rehearsed", "ms"], ["as the tool does it", number(skipping / 1e6)],
            ["with every pass of the timers", number(every / 1e6)]]
