#!/usr/bin/env bash
# Sets up a fresh Debian machine (as root), builds the library and its tests with gcc, with clang and with the
# sanitizers, and runs everything in one go.
#   ./test.sh                    all of it
#   ./test.sh --quick            gcc only, no sanitizers
#   ./test.sh PRESET ...         the named presets of CMakePresets.json
set -eu
cd "$(dirname "$0")"
. ./cmake/debian-setup.sh
debian_setup g++ clang-14 libclang-rt-14-dev cmake ninja-build ccache pkg-config python3 binutils libgtest-dev \
    libmpfr-dev libsndfile1-dev python3-mpmath qemu-user

presets=(release clang asan asan-clang tsan)
if [ "${1:-}" = --quick ]; then
    presets=(release)
elif [ $# -gt 0 ]; then
    presets=("$@")
fi

started=$(date +%s)
for preset in "${presets[@]}"; do
    echo "== building: $preset ($(($(date +%s) - started)) s)"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" --parallel "$(nproc)" | tail -n 1
done

# One run of the test driver over all builds, with one summary.
mkdir -p build/all
printf 'subdirs(%s)\n' "$(printf '"../%s" ' "${presets[@]}")" >build/all/CTestTestfile.cmake
echo "== testing ($(($(date +%s) - started)) s)"
ctest --test-dir build/all --parallel "$(nproc)" --output-on-failure
