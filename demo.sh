#!/usr/bin/env bash
# Sets up a fresh Debian machine (as root), builds and installs the library into build/demo, builds the spoken-digits
# example against it as any user would, trains on the shipped recordings and recognises the rest.
set -eu
cd "$(dirname "$0")"
. ./cmake/debian-setup.sh
debian_setup g++ cmake ninja-build pkg-config libsndfile1-dev

root=$PWD/build/demo/root
cmake -S . -B build/demo/library -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$root" \
    -DVORNSR_BUILD_TESTS=OFF -DVORNSR_BUILD_EXAMPLES=OFF >/dev/null
cmake --build build/demo/library
cmake --install build/demo/library >/dev/null
cmake -S examples/spoken-digits -B build/demo/spoken-digits -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_PREFIX_PATH="$root" >/dev/null
cmake --build build/demo/spoken-digits

digits=build/demo/spoken-digits/spoken-digits
data=examples/spoken-digits/data
"$digits" train "$data/train" --model build/demo/digits.model
"$digits" train "$data/train" --model build/demo/large.model --gaussians 16
"$digits" recognise "$data/test" --model build/demo/digits.model --report build/demo/report.html \
    --arithmetic all --method both --templates "$data/train" --shortlists "$data/train" --large build/demo/large.model
echo "report: build/demo/report.html"
