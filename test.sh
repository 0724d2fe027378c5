#!/usr/bin/env bash
# Sets up a fresh Debian machine (as root), builds the library and its tests with gcc and with clang, and runs every test
# against every per-processor build. This is what the continuous integration runs.
#   ./test.sh                    gcc and clang
#   ./test.sh --all              the sanitizers too (over an hour): before a submission that touches a kernel
#   ./test.sh --quick            gcc only
#   ./test.sh PRESET ...         the named presets of CMakePresets.json
set -euo pipefail
cd "$(dirname "$0")"
. ./cmake/debian-setup.sh
debian_setup g++ clang-14 libclang-rt-14-dev cmake ninja-build ccache pkg-config python3 binutils libgtest-dev \
    libmpfr-dev libsndfile1-dev qemu-user python3-mpmath libffi-dev nlohmann-json3-dev

case "${1:-}" in
"") presets=(release clang) ;;
--all) presets=(release clang asan asan-clang tsan) ;;
--quick) presets=(release) ;;
*) presets=("$@") ;;
esac

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
