#!/bin/sh
# Formatting of every source, then clang-tidy's checks of .clang-tidy on src/.
set -eu
sources=$(git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'fuzz/*.cpp' 'bench/*.cpp')
clang-format --dry-run --Werror $sources
CXX=clang++ cmake -S . -B build-lint -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVORNASET_TESTS=OFF -DVORNASET_BENCH=OFF >/dev/null
git ls-files 'src/*.cpp' | xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build-lint --warnings-as-errors='*'
