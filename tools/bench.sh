#!/bin/sh
# Hot paths by Google Benchmark, then whole jobs and PDF operations beside their base. Argument: the build folder.
set -eu
build=$1
for program in "$build"/bench/*; do
    case "$program" in
        */letter_floor|*/CMakeFiles|*.cmake|*.ninja) continue ;;
    esac
    [ -x "$program" ] && [ -f "$program" ] && "$program"
done
python3 bench/jobs.py "$build"
python3 bench/toolkit.py "$build"
