#!/usr/bin/env python3
"""Whole jobs, measured: records per second, peak memory, bytes per record.
usage: jobs.py BUILD_DIR [--jobs letter labels cards] [--rows 1000 10000 100000] [--runs 3]   (standard library only)

  letter   a page of text for each record, beside the floor program in one run
  labels   24 a sheet, with a barcode each; 1,000 and 10,000 rows
  cards    a photo for each record, 20 photos in turn; 1,000 and 10,000 rows

The floor (bench/floor/letter_floor.cpp) breaks lines greedily at one width, shapes nothing and compresses: the ratio to
it survives a noisy machine, a time doesn't. The marginal rate is that between the first two row counts. Bytes a record of
cards leave out the photos, which are in the file once."""
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


def write_rows(folder, count):
    data = os.path.join(folder, f'people_{count}.csv')
    with open(data, 'wb') as out:
        subprocess.run(['python3', str(SAMPLES / 'rows.py'), str(count)], stdout=out, check=True)
    return data


def run_job(job, build, folder, counts, runs):
    result = os.path.join(folder, 'out.pdf')
    once = sum(photo.stat().st_size for photo in (SAMPLES / 'photos').iterdir()) if job == 'cards' else 0
    print(f'{job:<8} {"rows":>8} {"program":<10} {"seconds":>8} {"records/s":>10} {"MB":>7} {"bytes/record":>13} '
          f'{"of floor":>9}')
    marginal = {}
    for count in counts:
        data = write_rows(folder, count)
        programs = {'floor': [str(build / 'bench' / 'letter_floor'), data, result]} if job == 'letter' else {}
        programs['vornaset'] = [str(build / 'vornaset'), 'merge', str(SAMPLES / f'{job}.idml'), data, '-o', result,
                                '--images', str(SAMPLES), '--quiet']
        floor = None
        for name, command in programs.items():
            seconds, megabytes, size = measure(command, result, runs)
            floor = floor or (seconds if name == 'floor' else None)
            marginal.setdefault(name, []).append((count, seconds))
            print(f'{"":<8} {count:>8} {name:<10} {seconds:>8.3f} {count / seconds:>10.0f} {megabytes:>7.0f} '
                  f'{(size - once) / count:>13.0f} ' + (f'{floor / seconds:>9.2f}' if floor else ''))
            os.remove(result)
    for name, points in marginal.items():
        if len(points) > 1:
            (n0, t0), (n1, t1) = points[0], points[1]
            print(f'{"":<8} marginal {name}: {(n1 - n0) / (t1 - t0):.0f} records/s')


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('build')
    parser.add_argument('--jobs', nargs='+', default=['letter', 'labels', 'cards'])
    parser.add_argument('--rows', type=int, nargs='+', default=[1000, 10000, 100000])
    parser.add_argument('--runs', type=int, default=3)
    options = parser.parse_args()
    build = pathlib.Path(options.build)
    with tempfile.TemporaryDirectory() as folder:
        for job in options.jobs:
            counts = options.rows if job == 'letter' else [count for count in options.rows if count <= 10000]
            run_job(job, build, folder, counts, options.runs)


if __name__ == '__main__':
    main()
