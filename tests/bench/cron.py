"""The two schedulers of Debian that are measured beside the daemon: cron and busybox crond."""
import os
import subprocess
import tempfile
import time
from pathlib import Path

import processes

LINES_A_FILE = 10000  # cron reads no more of one
SETTLED_S = 0.5
# Nothing of the machine's own is read or written: cron has its tables and its lock in a place of its own.
OWN_PLACE = """mount --make-rprivate / && mount --bind "$0"/cron.d /etc/cron.d &&
mount --bind "$0"/spool /var/spool/cron/crontabs && mount --bind "$0"/none /etc/crontab &&
mount -t tmpfs none /run && exec cron -f"""


def entries(count, user):
    """Daily entries, none of which is due within the next half hour."""
    now = time.localtime()
    first = now.tm_hour * 60 + now.tm_min + 30
    minutes = ((first + i % 1380) % 1440 for i in range(count))
    return [f"{minute % 60} {minute // 60} * * *{user} true\n" for minute in minutes]


class Crond(processes.Measured):
    """Runs with so many entries that are not due, and with a job that is due every minute where one is given."""

    user = ""

    def __init__(self, count, job=None):
        self.temporary = tempfile.TemporaryDirectory()
        folder = Path(self.temporary.name)
        folder.chmod(0o755)
        for name in ("cron.d", "spool"):
            (folder / name).mkdir()
        (folder / "none").touch()
        table = entries(count, self.user) + ([f"* * * * *{self.user} {job}\n"] if job else [])
        self.write(folder, table)
        super().__init__(self.command(folder))

    def wait_until_loaded(self):
        before = -1
        while (now := self.cpu_s()) != before:
            before = now
            time.sleep(SETTLED_S)

    def close(self):
        super().close()
        self.temporary.cleanup()


class Cron(Crond):
    name = package = "cron"
    user = " root"

    @staticmethod
    def write(folder, table):
        for first in range(0, len(table), LINES_A_FILE):
            (folder / "cron.d" / f"entries{first}").write_text("".join(table[first:first + LINES_A_FILE]))

    @staticmethod
    def command(folder):
        return ["unshare", "--mount", "sh", "-c", OWN_PLACE, folder]


class BusyboxCrond(Crond):
    name = "busybox crond"
    package = "busybox-static"

    @staticmethod
    def write(folder, table):
        (folder / "spool" / "root").write_text("".join(table))

    @staticmethod
    def command(folder):
        return ["busybox", "crond", "-f", "-L", "/dev/null", "-c", folder / "spool"]


def available():
    """Those that can be run here. Both want to be root, and cron a place of its own."""
    if os.geteuid() != 0:
        return []
    has_place = subprocess.run(["unshare", "--mount", "true"], capture_output=True).returncode == 0
    return [Cron, BusyboxCrond] if has_place else [BusyboxCrond]


def versions():
    packages = [program.package for program in available()]
    if not packages:
        return "nothing: that takes root rights"
    return subprocess.run(["dpkg-query", "-W", "-f", "${Package} ${Version}  ", *packages], check=True,
                          capture_output=True, text=True).stdout.strip().replace("  ", ", ")
