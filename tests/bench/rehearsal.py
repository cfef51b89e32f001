"""What the tool takes for long schedules, each as a process."""
import tempfile
from pathlib import Path

import processes
import schedules
from table import number

DAY, WEEK, YEAR = "1", "7", "365"
CASES = [  # command, lines, days, in the quick run too
    ("rehearse", 100, DAY, True), ("rehearse", 100, YEAR, False),
    ("rehearse", 1000, DAY, True), ("rehearse", 1000, WEEK, False), ("rehearse", 1000, YEAR, False),
    ("rehearse", 5000, DAY, False),
    ("check", 100000, "", False), ("next", 100000, "", False),
]
SPANS = {"": "", DAY: ", a day", WEEK: ", a week", YEAR: ", a year"}


def measure(quick):
    limit_s = 10 if quick else 40
    rows = [["Command", "processor time, s", "most memory, MB"]]
    with tempfile.TemporaryDirectory() as name:
        folder = schedules.make_data(Path(name) / "data")
        for command, lines, days, is_quick in CASES:
            if quick and not is_quick:
                continue
            arguments = [command, schedules.write(folder, "mixed", lines), "--playlists", folder / "playlists"]
            if command != "check":
                arguments += ["--from", "2024-05-15"]
            if days:
                arguments += ["--days", days]
            cpu_s, size = processes.run_tool(arguments, limit_s)
            rows.append([f"{command}, {lines:,} lines{SPANS[days]}",
                         f"more than {limit_s}" if cpu_s is None else number(cpu_s), number(size / 1e6)])
    return rows
