"""What the test driver hands to these tests, and how they skip."""
import os
import re
import subprocess
import sys

SOURCE = os.environ["VORNSR_SOURCE_DIR"]
VERIFY = os.environ["VORNSR_VERIFY"]
PROCESSOR = os.environ["VORNSR_PROCESSOR"]
SANITIZE = os.environ.get("VORNSR_SANITIZE", "")

# The processor flags (names of /proc/cpuinfo) that a build needs beyond x86-64 with SSE3.
NEEDED_FLAGS = {
    "m7": set(),
    "x86-64-v3": {"avx2", "bmi2", "fma", "f16c"},
    "x86-64-v4": {"avx2", "bmi2", "fma", "f16c", "avx512f", "avx512bw", "avx512cd", "avx512dq", "avx512vl"},
}


def skip(reason):
    print("skipped:", reason)
    sys.exit(77)


def skip_unless_processor_runs_build():
    with open("/proc/cpuinfo") as info:
        flags = set(re.search(r"^flags\s*:(.*)$", info.read(), re.M).group(1).split())
    missing = NEEDED_FLAGS[PROCESSOR] - flags
    if missing:
        skip(f"this processor cannot run the {PROCESSOR} build: no {', '.join(sorted(missing))}")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def text(*path):
    with open(os.path.join(SOURCE, *path)) as file:
        return file.read()


def exported_names():
    """The names that the linker's version script lets out."""
    script = re.sub(r"/\*.*?\*/", "", text("abi", "vornsr.map"), flags=re.S)
    names = re.search(r"global:(.*?)local:", script, re.S).group(1)
    return [name.strip() for name in names.split(";") if name.strip()]


def is_kernel(name):
    return re.search(r"_[MW]7(_?Al)?(_I|_sp)?$", name) is not None


def public_headers():
    folder = os.path.join(SOURCE, "include", "vornsr")
    return sorted(name for name in os.listdir(folder) if name.endswith(".h"))


def declared_functions(header):
    """The functions that a public header declares, in its order."""
    code = re.sub(r"/\*.*?\*/", "", text("include", "vornsr", header), flags=re.S)
    return re.findall(r"^[A-Za-z][\w\s\*]*?\b(vorn\w+)\s*\(", code, re.M)
