#!/usr/bin/env python3
"""The include rule: arrows point down. usage: check_includes.py SOURCE_DIR   Exit status 1 names every offender."""
import pathlib
import re
import sys

# Folder: what it may include beside itself and the standard library.
MAY_INCLUDE = {
    'host/api': [],
    'support': [],                      # units named *_host.{h,cpp} also see host/api
    'host': ['host/api', 'support'],
    'records': ['host', 'host/api', 'support'],
    'placeholders': ['records', 'host', 'host/api', 'support'],
    'merge': ['placeholders', 'records', 'host', 'host/api', 'pdf', 'support'],
    'pdf': ['support'],
    'desk/model': [],
    'desk/fonts': ['desk/model'],
    'desk/text': ['desk/fonts', 'desk/model'],
    'desk/idml': ['desk/model'],
    'desk/pictures': ['desk/model'],
    'desk/output': ['desk/pictures', 'desk/text', 'desk/fonts', 'desk/model'],
    'desk/border': ['desk/pictures', 'desk/model', 'host/api'],
    'desk': ['desk/model'],             # desk.h, what the desk shows
    'desk/session': ['desk', 'desk/output', 'desk/pictures', 'desk/text', 'desk/fonts', 'desk/idml', 'desk/border', 'desk/model',
                     'host/api'],
    'companion': ['desk', 'desk/model', 'merge', 'placeholders', 'records', 'host', 'host/api', 'pdf',
                  'support', 'tools/barcode'],
    'cli': ['companion'],
    'tools/barcode': [],
    'tools/barcode/program': ['tools/barcode'],
    'tools/rasterise': [],
    'widgets': ['support'],
    'ui': ['companion', 'widgets', 'support'],
}

# Library: the only places that may include its headers.
WRAPPERS = {
    r'hb(-\w+)?\.h|harfbuzz/.*|ft2build\.h|freetype/.*|fontconfig/.*': ['desk/fonts'],
    r'libdeflate\.h': ['desk/output', 'desk/pictures', 'pdf'],
    r'zlib\.h': ['pdf'],
    r'qpdf/.*': ['pdf', 'desk/pictures'],
    r'jpeglib\.h|jerror\.h': ['desk/pictures', 'pdf'],
    r'png\.h|tiffio\.h|lcms2\.h': ['desk/pictures'],
    r'zint\.h': ['tools/barcode'],
    r'QtCore/.*|QtNetwork/.*': ['widgets', 'ui', 'tools/rasterise'],
    r'QtGui/.*': ['widgets', 'ui', 'tools/rasterise'],
    r'QtPdf/.*': ['tools/rasterise'],
    r'QtWidgets/.*|QtUiTools/.*': ['widgets', 'ui'],
    r'Q[A-Z]\w*': [],                   # Qt is included with its module's name, so that the lines above can tell
    r'zip\.h': ['desk/idml'],
    r'libxml/.*': ['desk/idml', 'support'],
    r'plist/.*': ['support'],
    r'nlohmann/.*': ['support', 'companion'],
    r'CLI/.*': ['cli'],
    r'unicode/.*': ['support', 'desk/text', 'companion'],
}


def folder_of(path):
    parent = path.parent.as_posix()
    return '' if parent == '.' else parent


def main():
    source = pathlib.Path(sys.argv[1]) / 'src'
    offenders = []
    for file in sorted(list(source.rglob('*.h')) + list(source.rglob('*.cpp')) + list(source.rglob('*.def'))):
        relative = file.relative_to(source)
        folder = folder_of(relative)
        if folder not in MAY_INCLUDE:
            offenders.append(f'{relative}: folder {folder} has no line in the include rule')
            continue
        allowed = MAY_INCLUDE[folder] + [folder]
        if folder == 'support' and relative.stem.endswith('_host'):
            allowed.append('host/api')
        for number, line in enumerate(file.read_text(encoding='utf-8').splitlines(), 1):
            match = re.match(r'\s*#\s*include\s+["<]([^">]+)[">]', line)
            if not match:
                continue
            target = match.group(1)
            if (source / target).exists():
                if folder_of(pathlib.PurePosixPath(target)) not in allowed:
                    offenders.append(f'{relative}:{number}: {folder} may not include {target}')
                continue
            for pattern, places in WRAPPERS.items():
                if re.fullmatch(pattern, target) and folder not in places:
                    offenders.append(f'{relative}:{number}: {target} belongs in {", ".join(places) or "no folder"} alone')
    print('\n'.join(offenders) if offenders else 'every include points down')
    return 1 if offenders else 0


if __name__ == '__main__':
    sys.exit(main())
