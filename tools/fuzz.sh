#!/bin/sh
# Runs each fuzz target on its seeds for SECONDS_EACH (default 60). Findings stop the run.
set -eu
CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVORNASET_FUZZ=ON \
    -DVORNASET_SANITIZE=ON -DVORNASET_TESTS=OFF -DVORNASET_BENCH=OFF >/dev/null
cmake --build build-fuzz -j "$(nproc)"
for source in fuzz/*.cpp; do
    name=$(basename "$source" .cpp)
    mkdir -p "build-fuzz/corpus/$name"
    echo "== $name"
    "build-fuzz/fuzz/$name" -max_total_time="${SECONDS_EACH:-60}" -rss_limit_mb=2048 -timeout=20 \
        "build-fuzz/corpus/$name" "fuzz/seeds/$name"
done
