"""The whole daemon beside cron and busybox crond: its start, its entries, an idle minute."""
import statistics
import time
from contextlib import ExitStack

import bus
import cron
import processes
import schedules
from table import number, ratio

# Names as a station has them: each file is played by many lines. The last has another for each line.
KINDS = {
    "PlayMessage": "PlayMessage|gong.mp3,70", "PlayPlaylist": "PlayPlaylist|music,60,p1",
    "StopPlaylist": "StopPlaylist|p1", "PlayStream": "PlayStream|8554/live,50", "PlayRadioFm": "PlayRadioFm|98.5",
    "Volume": "Volume|55", "Light": "Light|40", "RecordPhoto": "RecordPhoto|10,3", "19": "19|1,1",
    "PlayMessage, each of its own file": "PlayMessage|announcements/number-{}.mp3,70",
}
SHOWN = {"mixed": "every kind"}


def now_s():
    now = time.localtime()
    return now.tm_hour * 3600 + now.tm_min * 60 + now.tm_sec


def start_up(quick):
    """From its start until its name is registered, and until it answers with 100 lines loaded."""
    named, answered = [], []
    with processes.Station(schedules.schedule("mixed", 100, now_s())) as station:
        for _ in range(3 if quick else 20):
            with bus.Client(station.bus.path) as client:
                client.watch(bus.DAEMON)
                began = time.monotonic()
                daemon = station.start()
                client.wait_for(bus.DAEMON)
                named.append((daemon.cpu_s(), time.monotonic() - began))
                client.ask_daemon()
                answered.append((daemon.cpu_s(), time.monotonic() - began))
                station.stop()
    rows = [["Until", "processor time, ms", "by the clock, ms"]]
    for what, samples in (("its name is on the bus", named), ("it answers, 100 lines loaded", answered)):
        rows.append([what, *(number(statistics.median(values) * 1e3) for values in zip(*samples))])
    return rows


def loaded(kind, lines):
    """The processor time and the memory of a daemon that has just loaded so many lines."""
    with processes.Station(schedules.schedule(kind, lines, now_s())) as station:
        daemon = station.start_and_load()
        return daemon.cpu_s(), daemon.anonymous_bytes()


def cron_loaded(program, lines):
    process = program(lines)
    try:
        process.wait_until_loaded()
        return process.cpu_s(), process.anonymous_bytes()
    finally:
        process.close()


def entries(quick):
    lines = 10000 if quick else 100000
    found = {}
    for name, kind in [(SHOWN["mixed"], "mixed"), *KINDS.items()]:
        empty = loaded(kind, 0)
        found[name] = [(after - before) / lines for before, after in zip(empty, loaded(kind, lines))]
    others = {}
    for program in cron.available():
        empty = cron_loaded(program, 0)
        others[program.name] = [(after - before) / lines for before, after in zip(empty, cron_loaded(program, lines))]
    base = others.get("cron", [None, None])
    rows = [[f"At {lines:,} lines", "bytes an entry", "of cron's", "load, µs a line", "of cron's"]]
    for name, (load_s, size) in (found | others).items():
        rows.append([name, number(size), ratio(size, base[1]), number(load_s * 1e6), ratio(load_s, base[0])])
    return rows


def idle(quick):
    """All side by side: what one costs says the system for each process."""
    sizes = (100, 100000) if quick else (100, 10000, 1000000)
    seconds = 21 if quick else 60
    with ExitStack() as stack:
        running = []
        for lines in sizes:
            station = stack.enter_context(processes.Station(schedules.schedule("all", lines, now_s())))
            running.append(("daemon", lines, station.start_and_load()))
            # Theirs comes once a minute: less than a minute says nothing of them.
            for program in [] if quick else cron.available():
                process = program(lines)
                stack.callback(process.close)
                process.wait_until_loaded()
                running.append((program.name, lines, process))
        before = [(process.cpu_s(), process.wake_ups()) for _, _, process in running]
        time.sleep(seconds)
        after = [(process.cpu_s(), process.wake_ups()) for _, _, process in running]
    spent = {(name, lines): [(end - begin) * 60 / seconds for begin, end in zip(*pair)]
             for (name, lines, _), pair in zip(running, zip(before, after))}
    rows = [["A minute in which nothing is due", "lines", "processor time, ms", "of cron's", "wake-ups"]]
    for (name, lines), (cpu_s, wake_ups) in sorted(spent.items(), key=lambda item: item[0][1]):
        base = spent.get(("cron", lines), [None])[0]
        rows.append([name, f"{lines:,}", number(cpu_s * 1e3), ratio(cpu_s, base), f"{wake_ups:.0f}"])
    return rows
