#!/usr/bin/env python3
"""Counts the instructions of a line's load, a far pass, an early pass and a rehearsed day, and compares them with those
that are kept in expected-instructions: 10 % more fail, and so does less than half, as what is won would be lost
unnoticed.

    instructions.py BUILD-FOLDER
"""
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True

import schedules

KEPT = Path(__file__).with_name("expected-instructions")
TOLERATED = 1.10
WON = 0.5
# The same on every machine: a zone of its own, no seed.
ENVIRONMENT = {"LC_ALL": "C.UTF-8", "TZ": "Europe/Rome", "QT_HASH_SEED": "0", "PATH": os.environ["PATH"]}


def count(folder, command):
    """The instructions of each part of a program's run, by its name; "" for what follows the last, or for all."""
    out = folder / "callgrind"
    for old in folder.glob("callgrind*"):
        old.unlink()
    environment = {**ENVIRONMENT, "OZNA_DATA_DIR": str(folder), "TMPDIR": str(folder)}
    done = subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", *command], env=environment,
                          stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}: {done.stderr}")
    counts = {}
    for path in folder.glob("callgrind*"):
        text = path.read_text()
        trigger = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.M)
        counts[trigger[1] if trigger else ""] = int(re.search(r"^(?:totals|summary): (\d+)", text, re.M)[1])
    return counts


def measure(build):
    with tempfile.TemporaryDirectory() as name:
        folder = schedules.make_data(Path(name) / "data")
        files = {kind: schedules.write(folder, *kind)
                 for kind in [("mixed", 100), ("mixed", 1000), ("all", 1000), ("early", 10)]}
        parts = count(folder, [build / "tests/bench_Counts"])
        rehearse = [build / "ozna-schedule", "rehearse", files["mixed", 100], "--from", "2024-05-15", "--playlists",
                    folder / "playlists", "--days"]
        days = [count(folder, [*rehearse, number])[""] for number in ("1", "2")]
    return {
        "load of a line": (parts["mixed-1000"] - parts["mixed-100"]) // 900,
        "far pass, 1,000 lines": parts["far-pass"],
        "early pass, 10 entries": parts["early-pass"],
        "rehearsed day, 100 lines": days[1] - days[0],
    }


def keep(counts):
    KEPT.write_text("".join(f"{name}: {counted}\n" for name, counted in counts.items()))


def kept():
    return {name: int(number) for name, number in (row.split(": ") for row in KEPT.read_text().splitlines())}


def main():
    counts = measure(Path(sys.argv[1]).resolve())
    expected = kept()
    differs = False
    for name, counted in counts.items():
        known = expected.get(name, 0)
        is_more = counted > known * TOLERATED
        is_less = counted < known * WON
        differs = differs or is_more or is_less
        remark = "  <-- too many" if is_more else "  <-- far fewer" if is_less else ""
        print(f"{name}: {counted:,} instructions, {known:,} kept{remark}")
    if differs:
        sys.exit("If that is meant, keep the new counts: tests/bench/run --keep")


if __name__ == "__main__":
    main()
