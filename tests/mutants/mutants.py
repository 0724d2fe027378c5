#!/usr/bin/env python3
"""Breaks the library on purpose, one place at a time, and asks the tests whether they see it.

Takes the test programs of a full build as they are; compiles the broken source alone and links it with the objects of
the others. Start it again to go on where it was cut: what was found stands in the journal."""
import argparse
import collections
import fcntl
import glob
import json
import os
import random
import re
import resource
import shutil
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import report
import sites
from build import HIDDEN, ROOT, Failed, Includes, Settings, Tree, read, same, sources
from run import Tests, programs_of, room_of, sweeps_of

MOST_UNITS = 20       # that a header's mutant is compiled in
ENOUGH_CHANGED = 10   # of them with other code
NOT_A_FUNCTION = re.compile(r"\s*(?:if|for|while|switch|return|else|\}|case|do|const auto|auto)\b")


def function_around(text, line):
    """The name of the function that a line stands in, as far as its layout says."""
    lines = text.split("\n")
    for at in range(line - 1, max(-1, line - 60), -1):
        said = lines[at]
        if not NOT_A_FUNCTION.match(said) and (m := re.match(r"^(?: {0,4})[A-Za-z].*?\b(\w+)\([^;]*\{", said)):
            if m.group(1) not in ("__attribute__", "decltype", "requires"):
                return m.group(1)
    return ""


class Later(Exception):
    """Needs the objects of a whole build that has none yet."""


class Judge:
    def __init__(self, options):
        self.settings, self.includes = Settings(options.build), Includes()
        self.work, self.sources = os.path.abspath(options.work), sources()
        self.units = [s for s in self.sources if s.endswith(".cpp")]
        self.base_lock, self.bases = threading.RLock(), set()
        self.first_tree = Tree(self.settings, self.includes, self.work, "-base")
        self.tests = Tests(self.settings, {})
        self.keep, self.sweeps, self.patient = options.keep, options.sweeps, bool(options.only)

    # What is unchanged.

    def need_base(self, processor):
        with self.base_lock:
            if processor not in self.bases:
                print(f"objects of the unchanged sources, {processor}", flush=True)
                for source in self.units:
                    self.first_tree.base(source, processor)
                self.bases.add(processor)

    def base_object(self, source, processor, extra=()):
        with self.base_lock:
            return self.first_tree.base(source, processor, extra)

    def measure(self, names):
        """That the unchanged sources pass, and how long each program usually takes; once for each."""
        with self.base_lock:
            self.measure_alone(names)

    def measure_alone(self, names):
        file = f"{self.work}/usual.json"
        usual = json.loads(read(file)) if os.path.exists(file) else {}
        for name in [n for n in names if n not in usual]:
            self.need_base("m7")
            library = self.first_tree.library("m7", {}, self.units, f"{self.work}/base/library")
            tests, before = Tests(self.settings, {name: 600}), resource.getrusage(resource.RUSAGE_CHILDREN)
            if name == "digests":
                outcome = tests.digests(library, "m7")
            else:
                outcome = tests.gtest(f"{self.settings.build}/tests/{name}", library, name)
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            if outcome.killed:
                raise SystemExit(f"the unchanged library does not pass: {outcome.by}")
            usual[name] = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
            print(f"  {name} passes with the unchanged sources: {usual[name]:.1f} s", flush=True)
            with open(file, "w", encoding="utf-8") as out:
                json.dump(usual, out)
        self.tests.usual = usual

    # One mutant.

    def judge(self, mutant, tree):
        started = time.time()
        entry = {"id": mutant.id, "path": mutant.path, "line": mutant.line, "kind": mutant.kind, "build": mutant.build,
                 "before": mutant.before, "after": mutant.after}
        tree.clear()
        tree.write(mutant.path, mutant.apply(read(f"{ROOT}/{mutant.path}")))
        try:
            verdict, by = self.verdict(mutant, tree)
        except Failed as failed:
            verdict, by = "invalid", str(failed).split("error:")[-1].strip().split("\n")[0][:160]
        finally:
            tree.restore(mutant.path)
        if self.keep and verdict == "survived":
            shutil.copytree(tree.out, f"{self.work}/kept/{mutant.id}", dirs_exist_ok=True)
        entry.update(verdict=verdict, by=by, seconds=round(time.time() - started, 1))
        return entry

    def verdict(self, mutant, tree):
        # The vocabularies are tested there before all else, what other rooms' tests look at from inside at the end.
        first = mutant.path.endswith(".h") and mutant.path.split("/")[2] in ("simd", "loops", "frame")
        seen, outcome = self.in_headers_tests(mutant, tree) if first else (False, None)
        if outcome:
            return self.kill(outcome)
        if mutant.build not in self.bases and not self.patient:
            raise Later
        changed, complete, passed = {}, True, set()
        for chunk, all_of_them in self.chunks(mutant):
            fresh = {}
            for unit in chunk:
                target = f"{tree.out}/{unit.replace('/', '_')}.o"
                tree.compile(unit, mutant.build, target)
                if not same(target, self.base_object(unit, mutant.build)):
                    fresh[unit] = target
            changed.update(fresh)
            complete = all_of_them
            if fresh:
                outcome = self.quickly(mutant, tree, changed, list(fresh), passed)
                if outcome:
                    return self.kill(outcome)
            if len(changed) >= ENOUGH_CHANGED:
                break
        if not changed:
            if seen:
                return "survived", ""
            return "equivalent", "the same code" if complete else f"the same code in {MOST_UNITS} units"
        if not seen and self.same_when_optimised(mutant, tree, changed):
            return "equivalent", "the same code at -O2"
        if mutant.path.endswith(".h") and not first:
            outcome = self.in_headers_tests(mutant, tree)[1]
            if outcome:
                return self.kill(outcome)
        outcome = self.slowly(mutant, tree, changed, passed)
        return self.kill(outcome) if outcome else ("survived", "")

    @staticmethod
    def kill(outcome):
        return ("timed out" if outcome.timed_out else "killed"), outcome.by

    def in_headers_tests(self, mutant, tree):
        """The tests that compile what is changed into themselves. Returns whether their code changes, and the first
        failure."""
        room = mutant.path.split("/")[2]
        folder = {"simd": "simd", "loops": "frame"}.get(room, room)
        program = f"test-simd-{mutant.build}" if room == "simd" else f"test-{folder}"
        units = [os.path.relpath(u, ROOT) for u in sorted(glob.glob(f"{ROOT}/tests/{folder}/**/*_test.cpp", recursive=True))]
        units = [u for u in units if mutant.path in self.includes.all(u)]
        name = function_around(read(f"{ROOT}/{mutant.path}"), mutant.line)
        near = [u for u in units if name and re.search(rf"\b{name}\b", read(f"{ROOT}/{u}"))]
        changed = {}
        for group in (near, [u for u in units if u not in near]):
            fresh = False
            for unit in group:
                target = tree.compile(unit, mutant.build, f"{tree.out}/{unit.replace('/', '_')}.o")
                if not same(target, self.base_object(unit, mutant.build)):
                    fresh = True
                    changed[f"/{os.path.relpath(unit, f'tests/{folder}')}.o"] = target
            if fresh:
                self.measure([program])
                linked = tree.program(program, changed)
                library = f"{self.work}/base/library/libvornsrm7.so.5.1"
                for guard in ("behind", "before"):
                    outcome = self.tests.gtest(linked, library, program, guard, mutant.build)
                    if outcome.killed:
                        return True, outcome
        return bool(changed), None

    def chunks(self, mutant):
        """The sources to compile, those first that most likely show the change; and whether these were all."""
        if mutant.path.endswith(".cpp"):
            yield [mutant.path], True
            return
        name = function_around(read(f"{ROOT}/{mutant.path}"), mutant.line)
        units = [u for u in self.units if mutant.path in self.includes.all(u)]

        def key(unit):
            text = read(f"{ROOT}/{unit}")
            common = os.path.commonprefix([room_of(unit), room_of(mutant.path)])
            return (-len(common.split("/")) if common else 0, not (name and re.search(rf"\b{name}\b", text)), len(text))

        units.sort(key=key)
        at, size = 0, 1
        while at < min(len(units), MOST_UNITS):
            chunk = units[at:min(at + size, MOST_UNITS)]
            at, size = at + len(chunk), size * 2
            yield chunk, at >= len(units)

    def linked(self, mutant, tree, changed):
        if mutant.build != "m7":
            self.need_base(mutant.build)
        return tree.library(mutant.build, changed, self.units, tree.out)

    def program(self, tree, name, changed):
        """The built program, or one linked anew where it has sources of the library in itself."""
        inside = [changed[s] for s in HIDDEN if s in changed]
        if not inside or name in ("test-simd-m7", "test-frame", "test-move", "test-vq"):
            return f"{self.settings.build}/tests/{name}"
        return tree.program(name, {}, inside)

    def quickly(self, mutant, tree, changed, fresh, passed):
        """The suites that stand for the sources, and what their tables are checked with. Programs of which these are
        all are passed with it, as long as no more sources change."""
        passed.clear()
        library = self.linked(mutant, tree, changed)
        if mutant.kind == "float" or "table" in mutant.path:
            outcome = self.tests.coefficients(tree.at)
            if outcome.killed:
                return outcome
        suites = collections.defaultdict(set)
        for unit in fresh:
            for program in programs_of(unit):
                suites[program].update(self.tests.suites_for(unit, program))
        for program, names in suites.items():
            if names:
                outcome = self.tests.gtest(self.program(tree, program, changed), library, program, "behind",
                                           mutant.build, sorted(names))
                if outcome.killed:
                    return outcome
                if names >= self.tests.suites_of(program):
                    passed.add(program)
        return None

    def slowly(self, mutant, tree, changed, passed):
        """Everything that tests the rooms."""
        library = f"{tree.out}/libvornsrm7.so.5.1"
        programs = list(dict.fromkeys(p for unit in changed for p in programs_of(unit)))
        sweeps = list(dict.fromkeys(p for unit in changed for p in sweeps_of(unit)) if self.sweeps else {})
        for guard, names in (("behind", programs), ("before", programs), ("behind", sweeps)):
            for name in names:
                if guard == "behind" and name in passed:
                    continue
                self.measure([name])
                outcome = self.tests.gtest(self.program(tree, name, changed), library, name, guard, mutant.build)
                if outcome.killed:
                    return outcome
        outcome = self.tests.digests(library, mutant.build)
        return outcome if outcome.killed else None

    def same_when_optimised(self, mutant, tree, changed):
        for unit in changed:
            target = tree.compile(unit, mutant.build, f"{tree.out}/optimised.o", ("-O2",))
            if not same(target, self.base_object(unit, mutant.build, ("-O2",))):
                return False
        return True


def builds_that_run():
    flags = set(re.search(r"^flags\s*:(.*)$", read("/proc/cpuinfo"), re.M).group(1).split())
    return {"m7"} | ({"x86-64-v3"} if "avx2" in flags else set()) | ({"x86-64-v4"} if "avx512bw" in flags else set())


def drawn(options, texts):
    """Mutants by the seed, as many as there are: a file by its size, and so a room by its own; a kind; one of these."""
    by_file, builds = {}, builds_that_run()

    def of(path):
        if path not in by_file:
            kinds = collections.defaultdict(list)
            for mutant in sites.mutants_of(path, texts[path]):
                if mutant.build in builds:
                    kinds[mutant.kind].append(mutant)
            by_file[path] = dict(sorted(kinds.items()))
        return by_file[path]

    if options.only:
        path, _, line = options.only.partition(":")
        for mutants in of(path).values():
            yield from (m for m in mutants if not (line and m.line != int(line)) and not sites.changes_nothing(m))
        return
    paths = [p for p in texts if not options.room or f"{os.path.dirname(p)}/".replace("/src/", "/").startswith(
        options.room.rstrip("/") + "/")]
    if not paths:
        raise SystemExit("no such room; a room is named like vornsr/scoring/gauss")
    weights = [sites.size_of(texts[p]) for p in paths]
    dice, seen, idle = random.Random(options.seed), set(), 0
    while idle < 2000:
        kinds = of(dice.choices(paths, weights)[0])
        if not kinds:
            idle += 1
            continue
        mutant = dice.choice(kinds[dice.choice(list(kinds))])
        if mutant.id in seen or sites.changes_nothing(mutant):
            idle += 1
            continue
        seen.add(mutant.id)
        idle = 0
        yield mutant


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=f"{ROOT}/build/release", help="a full build, whose test programs are run")
    parser.add_argument("--work", default=f"{ROOT}/build/mutants", help="where objects and the journal stand")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=300, help="mutants that compile to other code than the original")
    parser.add_argument("--room", help="only this one, such as vornsr/scoring/gauss")
    parser.add_argument("--only", metavar="FILE:LINE", help="every mutant of a line, or of a file")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--again", action="store_true", help="survivors of the journal are tried again")
    parser.add_argument("--sweeps", action="store_true", help="survivors meet the sweeps over all arguments, too")
    parser.add_argument("--keep", action="store_true", help="keep the objects of survivors, in WORK/kept")
    parser.add_argument("--report", action="store_true", help="only say what the journal holds")
    options = parser.parse_args()
    os.makedirs(options.work, exist_ok=True)
    journal = report.Journal(f"{options.work}/journal")
    texts = {path: read(f"{ROOT}/{path}") for path in sources()}
    explained = report.Explained(f"{ROOT}/tests/mutants/equivalent.txt", texts)
    if options.report:
        return report.tell(journal.entries.values(), explained)

    alone = open(f"{options.work}/lock", "w", encoding="utf-8")
    try:
        fcntl.flock(alone, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except OSError:
        raise SystemExit(f"another run uses {options.work}") from None
    judge = Judge(options)
    judge.need_base("m7")
    judge.measure([*sorted({p for unit in judge.units for p in programs_of(unit)}), "test-simd-m7", "digests"])
    entries, lock, start, tried, put_off = [], threading.Lock(), time.time(), [0], []
    wanted = drawn(options, texts)
    trees = [Tree(judge.settings, judge.includes, judge.work, job) for job in range(options.jobs)]

    def counted():
        return sum(e["verdict"] in report.COUNTED for e in entries)

    def work(tree):
        while True:
            with lock:
                mutant = None
                if options.only or counted() + len(put_off) < options.count:
                    mutant = next(wanted, None)
                if mutant is None and put_off:
                    mutant, judge.patient = put_off.pop(), True
                if mutant is None:
                    return
                known = journal.entries.get(mutant.id)
                if known and not (options.again and known["verdict"] == "survived"):
                    entries.append(known)
                    continue
            try:
                entry = judge.judge(mutant, tree)
            except Later:
                put_off.append(mutant)
                continue
            with lock:
                journal.add(entry)
                entries.append(entry)
                tried[0] += 1
                rate = tried[0] / (time.time() - start) * 60
                print(f"{counted():4d} {rate:5.1f}/min {entry['verdict']:10s} {entry['seconds']:5.1f} s {entry['path']}:{entry['line']}"
                      f" {entry['kind']} {entry['by']}", flush=True)

    try:
        with ThreadPoolExecutor(options.jobs) as pool:
            for done in [pool.submit(work, tree) for tree in trees]:
                done.result()
    except KeyboardInterrupt:
        print("cut; the journal has what was found")
    return report.tell(entries, explained)


if __name__ == "__main__":
    sys.exit(main())
