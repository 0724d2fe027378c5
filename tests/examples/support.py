"""What the tests of the examples share: the program under test, broken recordings, and when a test is left out."""

import argparse
import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

SKIPPED = 77
NEEDED_FLAGS = {
    "m7": {"pni"},
    "x86-64-v3": {"avx2", "bmi1", "bmi2", "fma", "f16c"},
    "x86-64-v4": {"avx512f", "avx512bw", "avx512cd", "avx512dq", "avx512vl"},
}

parser = argparse.ArgumentParser()
parser.add_argument("--program", required=True)
parser.add_argument("--data", required=True, type=pathlib.Path)
parser.add_argument("--libraries", required=True, type=pathlib.Path)
arguments = parser.parse_args()
processor = os.environ.get("VORNSR_PROCESSOR", "m7")


def environment(build):
    return {**os.environ, "LC_ALL": "C", "LD_LIBRARY_PATH": str(arguments.libraries / build)}


def run(*words, build=processor, **more):
    """Exit status, output and error output of the program."""
    done = subprocess.run([arguments.program, *map(str, words)], env=environment(build), capture_output=True,
                          encoding="utf-8", stdin=subprocess.DEVNULL, timeout=1800, **more)
    return done.returncode, done.stdout, done.stderr


def without_times(text):
    return "".join(line for line in text.splitlines(True) if not line.startswith("speed:"))


def wav(samples=4000, rate=8000, channels=1, bits=16, format_tag=1):
    """The bytes of a WAV file with the samples of a list, or as many of a tone-like pattern."""
    width = bits // 8
    if isinstance(samples, list):
        data = struct.pack(f"<{len(samples)}h", *samples)
    elif bits == 16:
        data = b"".join(struct.pack("<h", (i * 37 % 400 - 200) * 40) for i in range(samples * channels))
    else:
        data = bytes(i * 37 % 256 for i in range(samples * channels * width))
    head = struct.pack("<HHIIHH", format_tag, channels, rate, rate * channels * width, channels * width, bits)
    return (b"RIFF" + struct.pack("<I", 36 + len(data)) + b"WAVEfmt " + struct.pack("<I", 16) + head + b"data" +
            struct.pack("<I", len(data)) + data)


def skip_if_unable():
    """Ends the run where it cannot be done, and says why."""
    if not arguments.program:
        reason = "libsndfile was not found, so the examples were not built"
    else:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            flags = set(next(line for line in file if line.startswith("flags")).split())
        lacking = NEEDED_FLAGS[processor] - flags
        reason = f"this processor lacks {' '.join(sorted(lacking))}" if lacking else None
    if reason:
        print("skipped:", reason)
        sys.exit(SKIPPED)


class Folder(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def recording(self, name="7_theo_0.wav"):
        return arguments.data / "test" / name

    def assert_build_under_test_is_loaded(self):
        trace = {**environment(processor), "LD_TRACE_LOADED_OBJECTS": "1"}
        listing = subprocess.run([arguments.program], env=trace, capture_output=True, encoding="utf-8").stdout
        self.assertIn(str(arguments.libraries / processor / "libvornsrm7.so.5.1"), listing)
