"""The time between the second at which an action is due and the arrival of its request at the device."""
import math
import multiprocessing
import os
import random
import re
import signal
import statistics
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from contextlib import ExitStack
from pathlib import Path

import bus
import cron
import processes
import schedules
from table import number

CLIENTS = 200
ROUNDS = 8
AHEAD_S = 7  # from the start of a round to its first action: the daemon has loaded the schedule and looked at it
SAMPLES = 25
FEW_SAMPLES = 12  # where it is to be quick
AFTER_S = 3
HANGS_EVERY_S = 10
CRONS = 5
SET_VOLUME = re.compile(r"(\d\d):(\d\d):(\d\d\.\d{3}) .*SetMasterVolume\((\d+)")
FREQ = "com.kestrelix.ozna.freqinterface"
OTHERS = [f"com.kestrelix.ozna.{name}interface"
          for name in ("config", "update", "sound", "photo", "light", "gps", "network")]


def second_of_day(moment_s):
    local = time.localtime(moment_s)
    return local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec


def absent(interfaces):
    return [argument for interface in interfaces for argument in ("--absent", interface)]


def one_round(situation, samples):
    """Runs a daemon, started at any moment, with an action in each of the coming seconds. How late each request came,
    in milliseconds; None where it did not."""
    first_s = int(time.time()) + AHEAD_S
    rows = [schedules.line(second_of_day(first_s + i), f"Volume|{i}") for i in range(samples)]
    if situation == "hang":
        rows += [schedules.line(second_of_day(first_s + i), "SetCpuFreq|456")
                 for i in range(5, samples, HANGS_EVERY_S)]
    with ExitStack() as stack:
        station = stack.enter_context(processes.Station("".join(rows)))
        device = station.add_device(*absent([FREQ]))
        station.add_device("--quiet", *absent(OTHERS)).signal(signal.SIGSTOP if situation == "hang" else signal.SIGCONT)
        time.sleep(random.random())
        station.start_and_load()
        if situation == "crowd":
            callers = multiprocessing.Process(target=bus.crowd, args=(station.bus.path, CLIENTS), daemon=True)
            callers.start()
            stack.callback(callers.join)
            stack.callback(callers.kill)
        time.sleep(max(0.0, first_s + samples + AFTER_S - time.time()))
        os.set_blocking(device.process.stdout.fileno(), False)
        shown = (device.process.stdout.read() or b"").decode()
    late_ms = [None] * samples
    for hour, minute, second, index in SET_VOLUME.findall(shown):
        came_s = int(hour) * 3600 + int(minute) * 60 + float(second)
        late_s = came_s - second_of_day(first_s + int(index))
        late_ms[int(index)] = round(late_s * 1e3)
    return late_ms


def rounds(situation, quick, at_once):
    with ThreadPoolExecutor(at_once) as pool:
        count, samples = (1, FEW_SAMPLES) if quick else (ROUNDS, SAMPLES)
        found = pool.map(one_round, [situation] * count, [samples] * count)
    return [late_ms for one in found for late_ms in one]


def start_jobs(stack, program, file):
    """Some processes of the program, each started at another moment, with a job for each full minute that tells when it
    begins in the file."""
    for _ in range(CRONS):
        stack.callback(program(0, job=f"date +\\%s.\\%N >>{file}").close)
        time.sleep(random.random())


def begun(file):
    """How late those jobs began, in milliseconds."""
    return [float(moment) % 60 * 1e3 for moment in file.read_text().splitlines()]


def row(what, samples):
    come = sorted(sample for sample in samples if sample is not None)
    if not come:
        return [what, "0", "-", "-", "-", str(len(samples))]
    p99 = come[math.ceil(len(come) * 0.99) - 1]
    return [what, str(len(come)), number(statistics.median(come)), number(p99), number(come[-1]),
            str(len(samples) - len(come))]


def measure(quick):
    rows = [["Late by, ms", "samples", "median", "99th of 100", "worst", "missed"]]
    rows.append(row("alone", rounds("alone", quick, 2)))
    rows.append(row(f"{CLIENTS} clients call", rounds("crowd", quick, 1)))
    with ExitStack() as stack:
        folder = Path(stack.enter_context(tempfile.TemporaryDirectory()))
        # Where a peer hangs, a few more processes make no difference. Theirs comes once a minute: a short run has none.
        programs = [] if quick else cron.available()
        for program in programs:
            start_jobs(stack, program, folder / program.__name__)
        rows.append(row("another peer hangs", rounds("hang", quick, 2)))
        rows += [row(f"{program.name}, alone", begun(folder / program.__name__)) for program in programs]
    return rows
