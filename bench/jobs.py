#!/usr/bin/env python3
"""Whole jobs, measured: letters per second, peak memory, bytes per letter, each beside the floor program in one run.
usage: jobs.py BUILD_DIR [--rows 1000 10000 100000] [--runs 3]   (standard library only)

The floor (bench/floor/letter_floor.cpp) breaks lines greedily at one width, shapes nothing and compresses: the ratio to
it survives a noisy machine, a time doesn't. The marginal rate is that between the first two row counts."""
import argparse
import os
import pathlib
import statistics
import subprocess
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
SAMPLES = HERE.parent / 'samples'


def run(command):
    """Wall seconds and peak resident megabytes of one process."""
    start = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    _, message = process.stderr, None
    error = process.stderr.read().decode(errors='replace')
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f'{command[0]} ended with {process.returncode}: {error}')
    return time.monotonic() - start, usage.ru_maxrss / 1024


def measure(command, output, runs):
    taken = [run(command) for _ in range(runs)]
    return (statistics.median(t for t, _ in taken), max(m for _, m in taken), os.path.getsize(output))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('build')
    parser.add_argument('--rows', type=int, nargs='+', default=[1000, 10000, 100000])
    parser.add_argument('--runs', type=int, default=3)
    options = parser.parse_args()
    build = pathlib.Path(options.build)
    with tempfile.TemporaryDirectory() as folder:
        print(f'{"rows":>8} {"program":<10} {"seconds":>8} {"letters/s":>10} {"MB":>7} {"bytes/letter":>13} {"of floor":>9}')
        marginal = {}
        for count in options.rows:
            data = os.path.join(folder, f'people_{count}.csv')
            with open(data, 'wb') as out:
                subprocess.run(['python3', str(SAMPLES / 'rows.py'), str(count)], stdout=out, check=True)
            result = os.path.join(folder, 'out.pdf')
            programs = {
                'floor': [str(build / 'bench' / 'letter_floor'), data, result],
                'vornaset': [str(build / 'vornaset'), 'merge', str(SAMPLES / 'letter.idml'), data, '-o', result, '--quiet'],
            }
            floor = None
            for name, command in programs.items():
                seconds, megabytes, size = measure(command, result, options.runs)
                floor = floor or seconds
                marginal.setdefault(name, []).append((count, seconds))
                print(f'{count:>8} {name:<10} {seconds:>8.3f} {count / seconds:>10.0f} {megabytes:>7.0f} '
                      f'{size / count:>13.0f} {floor / seconds:>9.2f}')
                os.remove(result)
            print(f'{"":>8} rows file: {os.path.getsize(data) / 1e6:.1f} MB')
        for name, points in marginal.items():
            if len(points) > 1:
                (n0, t0), (n1, t1) = points[0], points[1]
                print(f'marginal {name}: {(n1 - n0) / (t1 - t0):.0f} letters/s')


if __name__ == '__main__':
    main()
