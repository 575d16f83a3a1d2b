#!/bin/sh
# Compiles each header of src/ by itself, on all cores. Arguments: source folder, compiler.
set -eu
source=$1
compiler=$2
flags="-std=c++20 -fsyntax-only -I$source/src $(pkg-config --cflags icu-uc libxml-2.0 harfbuzz freetype2 fontconfig libzip libqpdf libjpeg libtiff-4 Qt6Core Qt6Gui Qt6Widgets Qt6UiTools)"
export compiler flags
cd "$source/src"
find . -name '*.h' | sort | sed 's,^\./,,' | xargs -P "$(nproc)" -n 1 sh -c '
    echo "#include \"$1\"" | $compiler $flags -x c++ - || { echo "$1 does not compile alone"; exit 1; }' sh
