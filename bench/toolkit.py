#!/usr/bin/env python3
"""The PDF commands, measured beside qpdf and pdftk-java on the same files in one run.
usage: toolkit.py BUILD_DIR [--runs 5]   (standard library only; qpdf, pdftk)

  underlay  a one-page letterhead under 1,000 pages
  append    100 files of 10 pages joined
  rewrite   2,000 pages read and written again

The pages are letters merged by this build. Times are medians of whole processes; memory is the largest peak. What the
two others do is the nearest that they offer: neither compresses a stream again in `rewrite`, we do by rule."""
import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile

from jobs import SAMPLES, measure


def merge(build, folder, rows, template='letter.idml'):
    """A PDF of so many letters."""
    data = os.path.join(folder, f'people_{rows}.csv')
    with open(data, 'wb') as out:
        subprocess.run([sys.executable, str(SAMPLES / 'rows.py'), str(rows)], stdout=out, check=True)
    result = os.path.join(folder, f'letters_{rows}.pdf')
    subprocess.run([str(build / 'vornaset'), 'merge', str(SAMPLES / template), data, '-o', result, '--quiet'], check=True)
    return result


def decoded_megabytes(path):
    """What the file holds with every stream decoded, in megabytes."""
    plain = path + '.plain'
    subprocess.run(['qpdf', '--stream-data=uncompress', path, plain], check=True)
    size = os.path.getsize(plain) / 1e6
    os.remove(plain)
    return size


def letterhead(path):
    """One page with the drawings and the line of text that a letterhead has; no fonts of its own."""
    content = ('0.9 0.2 0 0.1 k 50 780 495 30 re f\n' + '\n'.join(
        f'{0.1 * (i % 10):.1f} 0 0 0 K {50 + 9 * i} 770 m {54 + 9 * i} 40 l S' for i in range(55)) +
        '\nBT /F1 9 Tf 50 30 Td (Vornaset, 1 Example Street, 12345 Exampletown) Tj ET\n').encode()
    objects = [b'<</Type/Catalog/Pages 2 0 R>>', b'<</Type/Pages/Kids[3 0 R]/Count 1>>',
               b'<</Type/Page/Parent 2 0 R/MediaBox[0 0 595.276 841.89]/Contents 4 0 R/Resources<</Font<</F1 5 0 R>>>>>>',
               b'<</Length %d>>stream\n%s\nendstream' % (len(content), content),
               b'<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>']
    out, offsets = b'%PDF-1.4\n', []
    for number, body in enumerate(objects, 1):
        offsets.append(len(out))
        out += b'%d 0 obj\n%s\nendobj\n' % (number, body)
    start = len(out)
    out += b'xref\n0 %d\n0000000000 65535 f \n' % (len(objects) + 1)
    out += b''.join(b'%010d 00000 n \n' % offset for offset in offsets)
    out += b'trailer<</Size %d/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n' % (len(objects) + 1, start)
    pathlib.Path(path).write_bytes(out)


def page_count(path):
    return int(subprocess.run(['qpdf', '--show-npages', path], capture_output=True, text=True, check=True).stdout)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('build')
    parser.add_argument('--runs', type=int, default=5)
    options = parser.parse_args()
    build = pathlib.Path(options.build)
    ours = str(build / 'vornaset')
    with tempfile.TemporaryDirectory() as folder:
        thousand, twothousand = merge(build, folder, 1000), merge(build, folder, 2000)
        head = os.path.join(folder, 'letterhead.pdf')
        letterhead(head)
        subprocess.run(['qpdf', thousand, '--split-pages=10', os.path.join(folder, 'part.pdf')], check=True)
        parts = sorted(os.path.join(folder, name) for name in os.listdir(folder) if re.match(r'part-\d', name))
        out = os.path.join(folder, 'out.pdf')
        jobs = {
            'underlay': (thousand, 1000, {
                'vornaset': [ours, 'pdf', 'underlay', head, thousand, '-o', out, '--quiet'],
                'qpdf': ['qpdf', thousand, '--underlay', head, '--from=', '--repeat=1', '--', out],
                'pdftk': ['pdftk', thousand, 'background', head, 'output', out]}),
            'append': (thousand, 1000, {
                'vornaset': [ours, 'pdf', 'append', *parts, '-o', out, '--quiet'],
                'qpdf': ['qpdf', '--empty', '--pages', *parts, '--', out],
                'pdftk': ['pdftk', *parts, 'cat', 'output', out]}),
            'rewrite': (twothousand, 2000, {
                'vornaset': [ours, 'pdf', 'rewrite', twothousand, '-o', out, '--quiet'],
                'qpdf': ['qpdf', twothousand, out],
                'pdftk': ['pdftk', twothousand, 'output', out]}),
        }
        print(f'{"job":<9} {"program":<9} {"seconds":>8} {"of qpdf":>8} {"MB":>6} {"of decoded":>11} {"file MB":>8}')
        for job, (source, pages, programs) in jobs.items():
            decoded = decoded_megabytes(source) if job != 'append' else sum(map(decoded_megabytes, parts))
            taken = {}
            for name, command in programs.items():
                taken[name] = measure(command, out, options.runs)
                assert page_count(out) == pages, f'{name} {job}: {page_count(out)} pages'
                os.remove(out)
            for name, (seconds, megabytes, size) in taken.items():
                print(f'{job:<9} {name:<9} {seconds:>8.3f} {seconds / taken["qpdf"][0]:>8.2f} {megabytes:>6.0f} '
                      f'{megabytes / decoded:>11.2f} {size / 1e6:>8.2f}')


if __name__ == '__main__':
    main()
