#!/bin/sh
# How near our lines come to reference documents: for each NAME.idml with NAME.host-lines.tsv, the share of lines with the
# same words, and of those at the same place. Arguments: build folder, folder of the documents, the comparing script, and
# folders with more fonts (a template's own fonts, where the machine lacks them). Needs mupdf-tools.
set -eu
build=$1
documents=$2
compare=$3
shift 3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/fonts"
for folder in "$documents/fonts" "$@"; do
    [ -d "$folder" ] && find "$folder" -type f \( -name '*.ttf' -o -name '*.otf' -o -name '*.woff' \) -exec cp {} "$work/fonts" \;
done
for lines in "$documents"/*.host-lines.tsv; do
    name=$(basename "$lines" .host-lines.tsv)
    "$build/vornaset" export "$documents/$name.idml" -o "$work/$name.pdf" --fonts "$work/fonts" --quiet
    printf '%-20s ' "$name"
    python3 "$compare" "$lines" "$work/$name.pdf" | tail -1
done
