"""Running the tests of a room against a library: whether one of them fails, and which."""
import os
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time

from build import ROOT, read

LIMIT = 5          # times the usual
LEAST = 10         # seconds
MEMORY = 6 << 30   # bytes that it may touch; addresses are not limited, some tests map more than there is memory
OUTPUT = 64 << 20

TOP = r"(?:vorns|vornsr)/src/"
# Programs that test a room beside the one of its own name.
BESIDE = {"elementary": ["exhaustive"], "linalg/curves": ["exhaustive"]}
# Headers and tables for all: what is tested through the families that use them.
THROUGH = {"loops": ["frame", "arithmetic", "move"], "frame": ["frame"], "simd": []}


def room_of(path):
    return os.path.dirname(re.sub(TOP, "", path))


def programs_of(source):
    room = room_of(source)
    first = room.split("/")[0]
    return [f"test-{name}" for name in THROUGH.get(first, [first])]


def sweeps_of(source):
    room = room_of(source)
    return [f"test-{name}" for at, names in BESIDE.items() if room == at or room.startswith(at + "/") for name in names]


def touched(pid):
    try:
        return int(read(f"/proc/{pid}/statm").split()[1]) * resource.getpagesize()
    except (OSError, IndexError):
        return 0


class Outcome:
    def __init__(self, killed, by="", seconds=0.0, timed_out=False):
        self.killed, self.by, self.seconds, self.timed_out = killed, by, seconds, timed_out


def suites_in(path):
    return re.findall(r"^\s*(?:TYPED_TEST|TEST|TEST_F|TEST_P|TYPED_TEST_P)\(\s*(\w+),", read(path), re.M)


class Tests:
    def __init__(self, settings, usual):
        self.settings, self.usual = settings, usual
        self.chosen = {}

    def limit(self, name):
        return max(LEAST, LIMIT * self.usual[name])

    def execute(self, command, library, name, guard="behind", processor="m7"):
        """Runs it until it ends or has used too much of the processor's time."""
        environment = dict(os.environ, LD_LIBRARY_PATH=os.path.dirname(library), VORNSR_TEST_LIBRARY=library,
                           VORNSR_PROCESSOR=processor, VORNSR_GUARD=guard, VORNSR_SOURCE_DIR=ROOT,
                           VORNSR_VERIFY=f"{self.settings.build}/verify/vornsr-verify",
                           PYTHONDONTWRITEBYTECODE="1")
        limit = self.limit(name)

        def limits():
            resource.setrlimit(resource.RLIMIT_CPU, (int(limit), int(limit) + 5))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_FSIZE, (OUTPUT, OUTPUT))

        started = time.time()
        with tempfile.TemporaryFile() as output:
            process = subprocess.Popen(command, env=environment, stdout=output, stderr=subprocess.STDOUT,
                                       stdin=subprocess.DEVNULL, preexec_fn=limits, start_new_session=True)
            code, timed_out = None, False
            while code is None:
                try:
                    code = process.wait(timeout=0.5)
                    timed_out = code == -signal.SIGXCPU
                except subprocess.TimeoutExpired:
                    timed_out = time.time() - started > 8 * limit
                    if timed_out or touched(process.pid) > MEMORY:
                        process.kill()
                        code = process.wait()
            output.seek(0, os.SEEK_END)
            size = output.tell()
            output.seek(max(0, size - 40000))
            text = output.read().decode(errors="replace")
        return code, timed_out, text, time.time() - started

    def gtest(self, program, library, name, guard="behind", processor="m7", suites=None):
        command = [program, "--gtest_brief=0", "--gtest_fail_fast", "--gtest_color=no"]
        if suites:
            command.append("--gtest_filter=" + ":".join(f"{s}.*:{s}/*:*/{s}.*:*/{s}/*" for s in suites))
        code, timed_out, text, seconds = self.execute(command, library, name, guard, processor)
        if code == 0:
            return Outcome(False, seconds=seconds)
        failed = re.findall(r"^\[  FAILED  \] ([\w/]+\.[\w/.]+)", text, re.M)
        running = re.findall(r"^\[ RUN      \] ([\w./]+)", text, re.M)
        which = failed[0] if failed else (running[-1] if running else "start")
        how = "time" if timed_out else f"signal {-code}" if code < 0 else ""
        return Outcome(True, f"{name}{'' if guard == 'behind' else ' before'}: {which}{' (' + how + ')' if how else ''}",
                       seconds, timed_out)

    def suites_for(self, source, program):
        """The suites of the test files that stand for a source: of its folder, with words of its name, and with the
        functions that it exports."""
        key = source, program
        if key not in self.chosen:
            self.chosen[key] = self.choose(source, program)
        return self.chosen[key]

    def choose(self, source, program):
        folder = f"{ROOT}/tests/{program.removeprefix('test-')}"
        names = set(re.findall(r"\b(vorns\w+)\(", read(f"{ROOT}/{source}")))
        wanted = set(re.split(r"[_.]", os.path.basename(source))) - {"h", "cpp", "kernels"}
        room, scores = room_of(source), {}
        for at, _, files in os.walk(folder):
            for file in files:
                if not file.endswith("_test.cpp"):
                    continue
                path = f"{at}/{file}"
                score = 3 * len(wanted & set(re.split(r"[_.]", file)))
                if os.path.relpath(at, f"{ROOT}/tests") == room and "/" in room:
                    score += 2
                if names:
                    said = read(path)
                    score += 4 * sum(name in said for name in names) / len(names)
                if score:
                    scores[path] = score
        best = max(scores.values(), default=0)
        return sorted({s for path, score in scores.items() if score >= best / 2 for s in suites_in(path)})

    def suites_of(self, program):
        folder = f"{ROOT}/tests/{program.removeprefix('test-')}"
        return {s for at, _, files in os.walk(folder) for f in files if f.endswith("_test.cpp")
                for s in suites_in(f"{at}/{f}")}

    def digests(self, library, processor):
        command = [sys.executable, f"{ROOT}/tests/library/digests.py"]
        code, timed_out, text, seconds = self.execute(command, library, "digests", processor=processor)
        differ = re.findall(r"^  (\w+)", text, re.M)
        return Outcome(code != 0, f"digests: {differ[0] if differ else 'no end'}", seconds, timed_out)

    def coefficients(self, tree):
        """Tables and constants are made again from their definitions."""
        names = [f"Coefficients.test_{n}" for n in ("tables_are_correctly_rounded", "constants_are_correctly_rounded",
                                                    "fitted_series_keep_their_bound", "given_polynomials_keep_their_bound")]
        environment = dict(os.environ, VORNSR_SOURCE_DIR=tree, VORNSR_VERIFY="", VORNSR_PROCESSOR="m7",
                           PYTHONDONTWRITEBYTECODE="1")
        result = subprocess.run(["/usr/bin/python3", f"{tree}/tests/library/coefficient_rules.py", *names],
                                env=environment, capture_output=True, text=True)
        failed = re.findall(r"^(?:FAIL|ERROR): (\w+)", result.stderr, re.M)
        return Outcome(result.returncode not in (0, 77), f"coefficients: {failed[0] if failed else ''}")
