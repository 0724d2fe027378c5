#!/usr/bin/env python3
"""Installs a build, compiles a C program against what was installed, and runs it.

Checked: the headers and the example of the README compile as C99, pkg-config and find_package() find the library, the program computes what the formula
says, and the dynamic loader takes the widest build that this processor can run.
"""
import argparse
import math
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77
README = pathlib.Path(__file__).resolve().parents[2] / "README.md"


def run(command, **options):
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, **options)
    if done.returncode != 0:
        sys.exit(f"failed: {' '.join(map(str, command))}\n{done.stdout}{done.stderr}")
    return done.stdout


def expected_build():
    """The folder that the loader should choose, by what the loader itself says that it supports."""
    loader = "/lib64/ld-linux-x86-64.so.2"
    for line in run([loader, "--help"]).splitlines():
        words = line.split()
        if words[:2] in (["x86-64-v4", "(supported,"], ["x86-64-v3", "(supported,"]):
            return words[0]
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("way", "build", "source", "compiler", "libdir"):
        parser.add_argument("--" + name, required=True)
    options = parser.parse_args()
    if options.way == "pkg-config" and shutil.which("pkg-config") is None:
        print("skipped: pkg-config is not installed")
        return SKIPPED

    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        root = folder / "root"
        run(["cmake", "--install", options.build, "--prefix", root])
        libdir = root / options.libdir
        program = folder / "program"
        source = pathlib.Path(options.source) / "program.c"
        strict = ["-std=c99", "-pedantic", "-Wall", "-Wextra", "-Werror"]
        if options.way == "pkg-config":
            environment = dict(os.environ, PKG_CONFIG_PATH=str(libdir / "pkgconfig"))
            # The file names the configured prefix; this installation stands elsewhere.
            flags = run(["pkg-config", f"--define-variable=prefix={root}", f"--define-variable=libdir={libdir}",
                         f"--define-variable=includedir={root}/include", "--cflags", "--libs", "vornsr"], env=environment)
            run([options.compiler, *strict, source, "-o", program, *flags.split(), "-ldl"])
            readme = folder / "readme.c"
            readme.write_text(README.read_text().split("```c\n")[1].split("```")[0])
            run([options.compiler, *strict, readme, "-o", folder / "readme", *flags.split()])
        else:
            target = "vornsr::vornsr-static" if options.way == "static" else "vornsr::vornsr"
            project = folder / "project"
            project.mkdir()
            (project / "CMakeLists.txt").write_text(
                "cmake_minimum_required(VERSION 3.25)\nproject(use C)\nfind_package(vornsr 5.1 REQUIRED)\n"
                f"add_executable(program {source})\ntarget_compile_options(program PRIVATE {' '.join(strict)})\n"
                f"target_link_libraries(program PRIVATE {target} dl)\n")
            run(["cmake", "-G", "Ninja", "-S", project, "-B", folder / "out", f"-DCMAKE_PREFIX_PATH={root}",
                 f"-DCMAKE_C_COMPILER={options.compiler}"])
            run(["cmake", "--build", folder / "out"])
            program = folder / "out" / "program"

        environment = {key: value for key, value in os.environ.items() if key != "LD_LIBRARY_PATH"}
        if options.way != "static":
            environment["LD_LIBRARY_PATH"] = str(libdir)
        printed = dict(line.split("=", 1) for line in run([program], env=environment).splitlines())

        total = math.log(sum(math.exp(x) for x in (-10.5, -11.25, -9.0)))
        if abs(float(printed["total"]) - total) > 1e-5:
            sys.exit(f"log-sum: got {printed['total']}, expected {total}")
        if options.way != "static":
            chosen = expected_build()
            inside = f"glibc-hwcaps/{chosen}/" if chosen else ""
            wanted = (libdir / (inside + "libvornsrm7.so.5.1")).resolve()
            if pathlib.Path(printed["library"]).resolve() != wanted:
                sys.exit(f"the loader took {printed['library']}, expected {wanted}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
