"""Compiling one source with a change in it, and linking it with the objects of the others."""
import glob
import hashlib
import json
import os
import re
import shlex
import shutil
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
FOLDERS = ("vorns", "vornsr", "include", "calls", "tests", "tools")
INCLUDE = ("include", "vornsr/src", "vorns/src")
TEST_INCLUDE = ("tests", ".", *INCLUDE)
# Sources that the tests compile once more for themselves.
HIDDEN = ("vorns/src/elementary/elementary.cpp", "vorns/src/fft/contexts/tables.cpp")


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def sources():
    found = []
    for folder in ("vorns/src", "vornsr/src"):
        for ending in ("h", "cpp"):
            found += glob.glob(f"{ROOT}/{folder}/**/*.{ending}", recursive=True)
    return sorted(os.path.relpath(path, ROOT) for path in found)


class Includes:
    """Which file includes which, by the files' own text."""

    def __init__(self):
        self.direct, self.closed = {}, {}

    def of(self, path):
        if path not in self.direct:
            names = re.findall(r'^\s*#\s*include\s*"([^"]+)"', read(f"{ROOT}/{path}"), re.M)
            found = []
            for name in names:
                for folder in (os.path.dirname(path), *TEST_INCLUDE):
                    candidate = os.path.normpath(os.path.join(folder, name))
                    if os.path.exists(f"{ROOT}/{candidate}"):
                        found.append(candidate)
                        break
            self.direct[path] = found
        return self.direct[path]

    def all(self, path):
        if path not in self.closed:
            seen, todo = set(), [path]
            while todo:
                for name in self.of(todo.pop()):
                    if name not in seen:
                        seen.add(name)
                        todo.append(name)
            self.closed[path] = seen
        return self.closed[path]


class Settings:
    """What the build directory says: the compiler's options, and what the programs are made of."""

    def __init__(self, build):
        self.build = os.path.abspath(build)
        cache = read(f"{self.build}/CMakeCache.txt")
        self.home = re.search(r"^CMAKE_HOME_DIRECTORY:\w+=(.*)$", cache, re.M).group(1)
        self.commands = json.loads(read(f"{self.build}/compile_commands.json"))
        self.ninja = read(f"{self.build}/build.ninja")

    def options(self, holds):
        for entry in self.commands:
            if holds(entry):
                words, kept, skip = shlex.split(entry["command"]), [], False
                for word in words[1:]:
                    if skip:
                        skip = False
                    elif word in ("-include", "-o", "-c", "-I"):
                        skip = True
                    elif not re.match(r"-I|-W|-O3|-fpch|-g\d?$", word):
                        kept.append(word)
                return words[0], kept
        raise SystemExit("no such target in compile_commands.json: is the build directory a full one?")

    def library(self, source, processor):
        target = "transforms" if source.startswith("vorns/src/fft/") else "objects"
        compiler, kept = self.options(lambda e: f"vornsr-{target}-{processor}.dir/" in e["command"]
                                      and "cmake_pch" not in e["file"])
        return [compiler, *kept, "-O1", "-w", *[f"-I{folder}" for folder in INCLUDE]]

    def test(self, source, processor):
        wanted = f"{self.home}/{source}"
        simd = source.startswith("tests/simd/")
        compiler, kept = self.options(lambda e: e["file"] == wanted
                                      and (not simd or f"test-simd-{processor}.dir/" in e["command"]))
        return [compiler, *kept, "-w", *[f"-I{folder}" for folder in TEST_INCLUDE]]

    def program(self, name):
        """The objects and the libraries of a test program."""
        at = re.search(rf"^build tests/{re.escape(name)}: \S+ ([^|\n]*)", self.ninja, re.M)
        libraries = re.search(r"^  LINK_LIBRARIES = (.*)$", self.ninja[at.end():], re.M).group(1)
        return at.group(1).split(), libraries.split()


class Failed(Exception):
    """The compiler or the linker did not take it."""


def run(command, directory):
    result = subprocess.run(command, cwd=directory, capture_output=True, text=True)
    if result.returncode:
        raise Failed(result.stderr[-2000:])


class Tree:
    """A copy of the sources in which one of them at a time is changed, and the objects of the unchanged ones."""

    def __init__(self, settings, includes, work, job):
        self.settings, self.includes, self.work = settings, includes, work
        self.at = f"{work}/tree{job}"
        self.out = f"{work}/out{job}"
        shutil.rmtree(self.at, ignore_errors=True)
        for folder in FOLDERS:
            shutil.copytree(f"{ROOT}/{folder}", f"{self.at}/{folder}", ignore=shutil.ignore_patterns("__pycache__"))
        shutil.rmtree(self.out, ignore_errors=True)
        os.makedirs(self.out)

    def write(self, path, text):
        with open(f"{self.at}/{path}", "w", encoding="utf-8") as file:
            file.write(text)

    def restore(self, path):
        self.write(path, read(f"{ROOT}/{path}"))

    def clear(self):
        shutil.rmtree(self.out, ignore_errors=True)
        os.makedirs(self.out)

    def command(self, source, processor):
        if source.startswith("tests/"):
            return self.settings.test(source, processor)
        return self.settings.library(source, processor)

    def compile(self, source, processor, target, extra=()):
        os.makedirs(os.path.dirname(target), exist_ok=True)
        run([*self.command(source, processor), *extra, "-o", target, "-c", source], self.at)
        return target

    def base(self, source, processor, extra=()):
        """The object of an unchanged source; made where it is missing or older than what it is made of. The tree must
        be unchanged."""
        tag = processor + "".join(extra)
        target = f"{self.work}/base/{tag}/{source.replace('/', '_')}.o"
        content = hashlib.sha1(" ".join([*self.command(source, processor), *extra]).encode())
        for path in sorted({source, *self.includes.all(source)}):
            content.update(read(f"{ROOT}/{path}").encode())
        stamp = content.hexdigest()
        if not (os.path.exists(target) and os.path.exists(target + ".stamp") and read(target + ".stamp") == stamp):
            self.compile(source, processor, target, extra)
            with open(target + ".stamp", "w", encoding="utf-8") as file:
                file.write(stamp)
        return target

    def library(self, processor, changed, all_sources, folder):
        """The shared library with the changed objects (by source) in the place of the base's."""
        os.makedirs(folder, exist_ok=True)
        objects = [changed.get(s) or f"{self.work}/base/{processor}/{s.replace('/', '_')}.o" for s in all_sources]
        target = f"{folder}/libvornsrm7.so.5.1"
        with open(f"{folder}/objects", "w", encoding="utf-8") as file:
            file.write("\n".join(objects))
        run(["gcc", "-shared", "-o", target, "-Wl,-soname,libvornsrm7.so.5.1", f"@{folder}/objects",
             f"-Wl,--version-script,{ROOT}/abi/vornsr.map", "-Wl,-Bsymbolic-functions", "-Wl,-z,now", "-lm"], self.at)
        return target

    def program(self, name, replaced, first=()):
        """A test program with other objects in the place of some of its own (by the ending of their names), and
        further ones in front of the libraries."""
        objects, libraries = self.settings.program(name)
        objects = [next((new for old, new in replaced.items() if o.endswith(old)), o) for o in objects]
        target = f"{self.out}/{name}"
        run(["g++", "-o", target, *objects, *first, *libraries, "-lpthread"], self.settings.build)
        return target


def same(one, two):
    with open(one, "rb") as a, open(two, "rb") as b:
        return a.read() == b.read()
