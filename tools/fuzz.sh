#!/bin/sh
# Builds the fuzz targets and runs each on its seeds for SECONDS_EACH (default 60). Findings stop the run, and stand in
# build-fuzz/findings.
set -eu
CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVORNASET_FUZZ=ON \
    -DVORNASET_SANITIZE=ON -DVORNASET_TESTS=OFF -DVORNASET_BENCH=OFF >/dev/null
names=$(for source in fuzz/*.cpp; do basename "$source" .cpp; done)
cmake --build build-fuzz -j "$(nproc)" --target $names
mkdir -p build-fuzz/findings
for name in $names; do
    mkdir -p "build-fuzz/corpus/$name"
    echo "== $name"
    "build-fuzz/fuzz/$name" -max_total_time="${SECONDS_EACH:-60}" -rss_limit_mb=2048 -timeout=20 \
        -artifact_prefix=build-fuzz/findings/ "build-fuzz/corpus/$name" "fuzz/seeds/$name"
done
