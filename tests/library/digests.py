"""Compares what this build computes with verify/digests.txt, which holds for every build, compiler and processor."""
import os
import shutil
import subprocess
import sys

import environment as env

# An emulated processor with SSSE3 and nothing newer: an instruction that does not belong into the baseline is fatal.
EMULATOR = ["qemu-x86_64", "-cpu", "Conroe"]


def digests(lines):
    return {name: digest for digest, name in (line.strip().split("  ", 1) for line in lines if line.strip())}


def main():
    command = [env.VERIFY]
    if "--emulated" in sys.argv:
        if env.SANITIZE:
            env.skip("the sanitizers' address space does not fit into the emulator")
        if shutil.which(EMULATOR[0]) is None:
            env.skip(f"{EMULATOR[0]} is not installed (Debian: qemu-user)")
        command = EMULATOR + command
    else:
        env.skip_unless_processor_runs_build()

    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode != 0:
        print(f"{' '.join(command)} ended with {result.returncode}\n{result.stderr}")
        return 1
    actual = digests(result.stdout.splitlines())
    golden = digests(env.text("verify", "digests.txt").splitlines())

    differing = [name for name in golden if name in actual and golden[name] != actual[name]]
    for title, names in (("differ from verify/digests.txt", differing),
                         ("stand in verify/digests.txt and were not run", [name for name in golden if name not in actual]),
                         ("were run and do not stand in verify/digests.txt", [name for name in actual if name not in golden])):
        if names:
            print(f"{len(names)} {title}:")
            for name in names:
                print(f"  {name}")
    print(f"{len(actual)} lines, {len(golden)} expected")
    return 0 if actual == golden and len(actual) > 1 else 1


if __name__ == "__main__":
    sys.exit(main())
