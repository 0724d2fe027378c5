#!/usr/bin/env bash
# Writes verify/digests.txt, the digests that every build must give, after a change of a workload or of a promise.
#
#   cmake --preset release && cmake --build --preset release
#   cmake --preset clang && cmake --build --preset clang
#   verify/update-digests.sh [BUILD_DIRECTORY ...]        (default: build/release build/clang)
#
# Every per-processor build of every directory is run; only if all of them agree is the file written, and the functions
# whose digests have changed are shown. A digest that changed without a reason is a defect.
set -eu
cd "$(dirname "$0")/.."
[ $# -gt 0 ] || set -- build/release build/clang
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

runs=0
for build in "$@"; do
    for library in "$build"/lib/*/libvornsrm7.so.5.1; do
        folder=$(dirname "$library")
        echo "running $folder"
        LD_LIBRARY_PATH=$folder "$build/verify/vornsr-verify" >"$scratch/now"
        [ -e "$scratch/first" ] || cp "$scratch/now" "$scratch/first"
        if ! diff "$scratch/first" "$scratch/now"; then
            echo "$folder differs from the first run; verify/digests.txt is left as it is" >&2
            exit 1
        fi
        runs=$((runs + 1))
    done
done

[ "$runs" -ge 6 ] || { echo "only $runs runs: three builds with each of two compilers are needed" >&2; exit 1; }
[ -e verify/digests.txt ] && diff verify/digests.txt "$scratch/first" || true
cp "$scratch/first" verify/digests.txt
echo "verify/digests.txt: $(tail -n 1 verify/digests.txt), the same in $runs runs"
