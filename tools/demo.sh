#!/bin/sh
# The main jobs on the samples: letters, labels with barcodes, cards with photos. Argument: the build folder.
set -eu
build=$1
mkdir -p out
"$build/vornaset" merge samples/letter.idml samples/people_100.csv -o out/letters.pdf
"$build/vornaset" merge samples/labels.idml samples/people_100.csv -o out/labels.pdf
"$build/vornaset" merge samples/cards.idml samples/people_100.csv -o out/cards.pdf
for job in letters labels cards; do
    pdftoppm -r 80 -f 1 -l 1 -singlefile -png "out/$job.pdf" "out/$job"
done
echo "The letters:          $PWD/out/letters.pdf"
echo "Their first page:     $PWD/out/letters.png"
echo "The labels, 24 a page: $PWD/out/labels.pdf"
echo "Their first page:     $PWD/out/labels.png"
echo "The cards:            $PWD/out/cards.pdf"
echo "The first card:       $PWD/out/cards.png"
