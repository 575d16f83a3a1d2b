#!/usr/bin/env python3
"""Rewrites PDF files and compares how they look before and after, page by page, at 72 dpi in an independent renderer.
usage: round_trip.py VORNASET [FILE_OR_FOLDER...]   (standard library only; qpdf, pdftoppm)

Without files: those that the producers on this machine make (Ghostscript, cairo by rsvg-convert, MuPDF by mutool, groff,
img2pdf, ReportLab; each that is missing is named) and those under ../shared/samples where it stands. Prints for each
file its pages, the largest difference of a pixel's component (0 to 255), and how many components differ by more than 8.
Exit status 1 when a rewritten file doesn't pass `qpdf --check` or has another number of pages."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
SAMPLES = HERE.parent / 'samples'
NOTABLE = 8

POSTSCRIPT = """%!PS
<</PageSize [300 400]>> setpagedevice
/Times-Roman findfont 24 scalefont setfont 30 340 moveto (Ghostscript) show
0.2 0.7 0 0.1 setcmykcolor 30 200 100 80 rectfill 1 0 0 setrgbcolor 5 setlinewidth 150 200 moveto 250 300 lineto stroke
showpage
0.5 setgray 0 0 150 200 rectfill 0 setgray /Courier findfont 12 scalefont setfont 30 300 moveto (second page) show showpage
"""
SVG = """<svg xmlns="http://www.w3.org/2000/svg" width="300" height="400"><defs><linearGradient id="g"><stop offset="0"
stop-color="#c00"/><stop offset="1" stop-color="#00c"/></linearGradient></defs><rect x="20" y="20" width="200" height="100"
fill="url(#g)" opacity="0.6"/><circle cx="150" cy="250" r="80" fill="#0a0" fill-opacity="0.5"/><text x="30" y="350"
font-size="30" font-family="Liberation Serif">cairo: äöü</text></svg>"""
MUTOOL = """%%MediaBox 0 0 300 400
%%Font Tim Times-Roman
q 0 0 1 rg 20 20 100 100 re f Q BT /Tim 24 Tf 30 300 Td (MuPDF) Tj ET
"""
GROFF = ".sp 2i\n.ps 24\n.vs 30\nA page by \\fBgroff\\fP with \\fIthree\\fP faces.\n.br\n\\D'c 1i'\n"
REPORTLAB = """import sys
from reportlab.pdfgen import canvas
c = canvas.Canvas(sys.argv[1], pagesize=(300, 400), pageCompression=1)
c.drawString(30, 350, 'ReportLab'); c.setFillColorCMYK(0.6, 0, 0.4, 0.1); c.roundRect(30, 100, 200, 150, 20, fill=1)
c.drawImage(sys.argv[2], 60, 130, 100, 60); c.linkURL('http://localhost/', (30, 340, 100, 360)); c.showPage()
c.rotate(30); c.drawString(100, 100, 'turned'); c.save()
"""


def produced(folder):
    """Files by the producers that this machine has."""
    photo = sorted((SAMPLES / 'photos').glob('*.jpg'))[0]
    inputs = {'page.ps': POSTSCRIPT, 'page.svg': SVG, 'page.mu': MUTOOL, 'page.roff': GROFF, 'page.py': REPORTLAB}
    for name, text in inputs.items():
        (folder / name).write_text(text)
    commands = {
        'ghostscript': ['gs', '-q', '-dBATCH', '-dNOPAUSE', '-sDEVICE=pdfwrite', '-o', 'ghostscript.pdf', 'page.ps'],
        'cairo': ['rsvg-convert', '-f', 'pdf', '-o', 'cairo.pdf', 'page.svg'],
        'mupdf': ['mutool', 'create', '-o', 'mupdf.pdf', 'page.mu'],
        'groff': ['sh', '-c', 'groff -Tpdf page.roff > groff.pdf'],
        'img2pdf': ['img2pdf', '-o', 'img2pdf.pdf', str(photo)],
        'reportlab': [sys.executable if has_module('reportlab') else '/usr/bin/python3', 'page.py', 'reportlab.pdf', str(photo)],
    }
    for name, command in commands.items():
        done = shutil.which(command[0]) and subprocess.run(command, cwd=folder, capture_output=True).returncode == 0
        if done and (folder / f'{name}.pdf').stat().st_size:
            yield folder / f'{name}.pdf'
        else:
            print(f'{name}: not on this machine')


def has_module(name):
    return subprocess.run([sys.executable, '-c', f'import {name}'], capture_output=True).returncode == 0


def pages_of(path, folder):
    """The pages as PPM bytes."""
    folder.mkdir()
    subprocess.run(['pdftoppm', '-r', '72', str(path), str(folder / 'p')], check=True, capture_output=True)
    for name in sorted(os.listdir(folder)):
        yield (folder / name).read_bytes()
    shutil.rmtree(folder)


def compare(program, path, folder):
    rewritten = folder / 'rewritten.pdf'
    run = subprocess.run([program, 'pdf', 'rewrite', str(path), '-o', str(rewritten), '--quiet'], capture_output=True, text=True)
    if run.returncode != 0:
        print(f'{path.name}: {run.stderr.strip()}')
        return False
    check = subprocess.run(['qpdf', '--check', str(rewritten)], capture_output=True, text=True)
    before, after = list(pages_of(path, folder / 'a')), list(pages_of(rewritten, folder / 'b'))
    largest = notable = 0
    for one, other in zip(before, after):
        if len(one) != len(other):
            largest, notable = 255, notable + max(len(one), len(other))
        elif one != other:
            differences = [abs(a - b) for a, b in zip(one, other) if a != b]
            largest = max(largest, max(differences))
            notable += sum(difference > NOTABLE for difference in differences)
    sound = check.returncode == 0 and len(before) == len(after)
    print(f'{path.name:<40} {len(before):>4} pages   largest difference {largest:>3}   notable {notable:>7}   '
          f'{"sound" if sound else "NOT SOUND: " + (check.stdout + check.stderr).strip().splitlines()[-1]}')
    return sound


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    program = str(pathlib.Path(sys.argv[1]).resolve())
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        files = []
        for given in map(pathlib.Path, sys.argv[2:]):
            files += sorted(given.rglob('*.pdf')) if given.is_dir() else [given]
        if len(sys.argv) == 2:
            files = list(produced(folder)) + sorted((HERE.parent.parent / 'shared' / 'samples').rglob('*.pdf'))
        sys.exit(0 if all([compare(program, path, folder) for path in files]) else 1)


if __name__ == '__main__':
    main()
