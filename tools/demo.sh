#!/bin/sh
# The main job on the samples. Argument: the build folder.
set -eu
build=$1
mkdir -p out
"$build/vornaset" merge samples/letter.idml samples/people_100.csv -o out/letters.pdf
pdftoppm -r 80 -f 1 -l 1 -singlefile -png out/letters.pdf out/letters
echo "The letters:          $PWD/out/letters.pdf"
echo "Their first page:     $PWD/out/letters.png"
