"""The tests of a build: run one by one, as CTest would, and in an order that finds a fault soon."""

import json
import os
import pathlib
import re
import resource
import signal
import subprocess
import tempfile
import time

PASSED = "passed"
FAILED = "failed"
LATE = "timed out"
FAILURE = b"FAIL!"
POLL_S = 0.1

# A fault may make a program take all that there is.
MOST_MEMORY = 6 << 30
MOST_OUTPUT = 1 << 30


class Test:
    """One test of CTest's."""

    def __init__(self, entry):
        self.name = entry["name"]
        self.command = entry["command"]
        properties = {each["name"]: each["value"] for each in entry.get("properties", [])}
        self.folder = properties["WORKING_DIRECTORY"]
        self.timeout_s = properties.get("TIMEOUT", 60.0)
        self.labels = properties.get("LABELS", [])
        self.environment = dict(each.split("=", 1) for each in properties.get("ENVIRONMENT", []))
        self.unset = []
        for each in properties.get("ENVIRONMENT_MODIFICATION", []):
            variable, operation = each.split("=", 1)
            if operation != "unset:":
                raise ValueError(f"{self.name}: unknown modification of the environment: {each}")
            self.unset.append(variable)

    def run(self, variables, timeout_s=None):
        """Runs the test with further variables: how it ended, and after how many seconds."""
        return self.run_reaching(variables, None, timeout_s)[:2]

    def run_reaching(self, variables, reached, timeout_s=None):
        """Runs the test with further variables, one of which, if reached is its name, holds the path of a file for the
        test to write to: how it ended, after how many seconds, and the words in that file."""
        environment = dict(os.environ)
        for variable in self.unset:
            environment.pop(variable, None)
        environment |= self.environment | variables
        begin = time.monotonic()
        with tempfile.TemporaryDirectory(prefix="ozna-mutant-") as scratch:
            # Some tests become an ordinary user, as one may in the folder for temporary files.
            os.chmod(scratch, 0o1777)
            words = pathlib.Path(scratch) / "reached"
            words.touch()
            words.chmod(0o666)
            if reached:
                environment[reached] = str(words)
            with open(pathlib.Path(scratch) / "output", "wb") as output:
                # Whatever the test leaves behind goes with its session, and with its folder.
                process = subprocess.Popen(self.command, cwd=self.folder, env=environment | {"TMPDIR": scratch},
                                           stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                                           start_new_session=True, preexec_fn=_limit)
                status = _wait(process, pathlib.Path(output.name), begin + (timeout_s or self.timeout_s))
                _end(process)
            return status, time.monotonic() - begin, set(words.read_text().split())


def _wait(process, output, deadline):
    """How a test program ends. One that has told of a failure need not come to its end."""
    with open(output, "rb") as text:
        while time.monotonic() < deadline:
            try:
                return PASSED if process.wait(POLL_S) == 0 else FAILED
            except subprocess.TimeoutExpired:
                if FAILURE in text.read():
                    return FAILED
    return LATE


def _limit():
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (MOST_OUTPUT, MOST_OUTPUT))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def _end(process):
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def tests_of(build):
    """Every test of a build, by its name."""
    shown = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, check=True, capture_output=True, text=True)
    return {entry["name"]: Test(entry) for entry in json.loads(shown.stdout)["tests"] if "command" in entry}


class Plan:
    """Which tests the faults of a file are tried on, from a text file of patterns (see there)."""

    def __init__(self, path):
        self.never = []
        self.without = []
        self.only = []
        self.first = []
        for line in pathlib.Path(path).read_text().splitlines():
            words = line.split("#")[0].split()
            if not words:
                continue
            kind, *patterns = words
            if kind == "never":
                self.never += patterns
            elif kind in ("only", "without", "first") and len(patterns) > 1:
                getattr(self, kind).append(patterns)
            else:
                raise ValueError(f"{path}: {line}")

    def order(self, file, costs):
        """The tests for a fault in that file, out of those of costs: what is tried first, those named after the file
        among it, and the rest, the quick ones first."""
        names = [name for name in sorted(costs, key=costs.get) if not _matches(name, self.never)]
        for pattern, *tests in self.only:
            if re.fullmatch(pattern, file):
                names = [name for name in names if _matches(name, tests)]
        for pattern, *tests in self.without:
            if re.fullmatch(pattern, file):
                names = [name for name in names if not _matches(name, tests)]
        first = []
        own = [re.escape(file), rf"(unit|tool)\.{pathlib.Path(file).stem}.*"]
        for pattern, *tests in [own, *self.first]:
            if re.fullmatch(pattern, file):
                first += [name for test in tests for name in names if _matches(name, [test]) and name not in first]
        return first, [name for name in names if name not in first]


def _matches(name, patterns):
    return any(re.fullmatch(pattern, name) for pattern in patterns)
