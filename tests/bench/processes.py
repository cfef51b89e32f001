"""Processes that are measured, and what the system tells of them."""
import os
import re
import signal
import subprocess
import tempfile
import time
from contextlib import ExitStack
from pathlib import Path

import bus
import schedules

ROOT = Path(__file__).resolve().parents[2]
BUILD = ROOT / "build/release"
# How the tool ends when it has done its work, with findings or without; and when the limit has ended it.
ENDS = (0, 1, 2)
CUT = (-signal.SIGXCPU, -signal.SIGKILL)
# A time zone that the environment names would be faster than the machine's, which a device has.
os.environ.pop("TZ", None)
time.tzset()
ENVIRONMENT = {name: value for name, value in os.environ.items() if not name.startswith("OZNA_")}
ENVIRONMENT |= {"LC_ALL": "C.UTF-8", "OZNA_LOG_LEVEL": "1"}


class Measured:
    """A process, until it is closed."""

    def __init__(self, command, environment=None, output=subprocess.DEVNULL):
        self.process = subprocess.Popen(list(map(str, command)), env=environment or ENVIRONMENT, stdout=output,
                                        stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.folder = Path(f"/proc/{self.process.pid}")

    def cpu_s(self):
        """The processor time of all its threads."""
        return sum(int(path.read_text().split()[0]) for path in self.folder.glob("task/*/schedstat")) / 1e9

    def wake_ups(self):
        return sum(self.status(path, "voluntary_ctxt_switches") for path in self.folder.glob("task/*/status"))

    def anonymous_bytes(self):
        """The memory that it holds and shares with no file."""
        return self.status(self.folder / "status", "RssAnon") * 1024

    @staticmethod
    def status(path, name):
        return next(int(row.split()[1]) for row in path.read_text().splitlines() if row.startswith(name + ":"))

    def signal(self, number):
        self.process.send_signal(number)

    def close(self):
        self.process.kill()
        self.process.wait()
        if self.process.stdout:
            self.process.stdout.close()


class Bus(Measured):
    """A private message bus."""

    def __init__(self, folder):
        super().__init__(["dbus-daemon", "--nofork", "--print-address=1", f"--address=unix:path={folder}/bus",
                          f"--config-file={ROOT}/tests/data/bus.conf"], output=subprocess.PIPE)
        self.address = self.process.stdout.readline().decode().strip()
        self.path = f"{folder}/bus"


class Station:
    """A daemon in a data folder and on a bus of its own. text: its schedule."""

    def __init__(self, text):
        self.stack = ExitStack()
        # Always /tmp: a socket's path must be short.
        self.temporary = Path(self.stack.enter_context(tempfile.TemporaryDirectory(dir="/tmp")))
        self.folder = schedules.make_data(self.temporary / "data")
        self.write(text)
        self.bus = self.closed_at_end(Bus(self.temporary))
        configuration = self.temporary / "ozna.ini"
        configuration.write_text("[GENERAL]\nServerIp=127.0.0.1\n")
        self.environment = ENVIRONMENT | {"DBUS_SESSION_BUS_ADDRESS": self.bus.address,
                                          "OZNA_DATA_DIR": str(self.folder), "OZNA_CONFIG_FILE": str(configuration)}
        self.devices = 0
        self.daemon = None

    def closed_at_end(self, process):
        self.stack.callback(process.close)
        return process

    def write(self, text):
        (self.folder / "schedule/schedule.csv").write_text(text)

    def add_device(self, *arguments):
        """Starts a simulated device, and returns when its peers are on the bus."""
        self.devices += 1
        name = f"com.kestrelix.ozna.simulator{self.devices}"
        with bus.Client(self.bus.path) as client:
            client.watch(name)
            device = Measured([BUILD / "ozna-simulator", "--control", name, *arguments], self.environment,
                              output=subprocess.PIPE)
            client.wait_for(name)
        return self.closed_at_end(device)

    def start(self):
        """Starts the daemon; returns at once."""
        self.daemon = Measured([BUILD / "ozna-scheduler-local"], self.environment)
        return self.daemon

    def start_and_load(self):
        """Returns when it answers: it has loaded then."""
        with bus.Client(self.bus.path) as client:
            client.watch(bus.DAEMON)
            daemon = self.start()
            client.wait_for(bus.DAEMON)
            client.ask_daemon()
        return daemon

    def stop(self):
        self.daemon.close()

    def close(self):
        if self.daemon:
            self.daemon.close()
        self.stack.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


def run_tool(arguments, limit_s):
    """Runs ozna-schedule; its processor time in seconds, None if it took more than the limit, and the most memory that
    it held, in bytes."""
    process = Measured(["prlimit", f"--cpu={limit_s}", BUILD / "ozna-schedule", *arguments])
    most = 0
    # The system's own account of the most memory begins with that of this process.
    while "VmHWM" in (status := (process.folder / "status").read_text()):
        most = max(most, int(re.search(r"VmHWM:\s+(\d+)", status)[1]) * 1024)
        time.sleep(0.01)
    _, status, usage = os.wait4(process.process.pid, 0)
    process.process.returncode = os.waitstatus_to_exitcode(status)
    if process.process.returncode not in (*ENDS, *CUT):
        raise RuntimeError(f"ozna-schedule {' '.join(map(str, arguments))}: {process.process.returncode}")
    return None if process.process.returncode in CUT else usage.ru_utime + usage.ru_stime, most
