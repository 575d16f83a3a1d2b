#!/bin/sh
# Compiles each header of src/ by itself. Arguments: source folder, compiler.
set -eu
source=$1
compiler=$2
flags="-std=c++20 -fsyntax-only -I$source/src $(pkg-config --cflags icu-uc libxml-2.0 harfbuzz freetype2 fontconfig libzip libqpdf libjpeg libtiff-4 Qt6Core Qt6Network Qt6Gui Qt6Widgets Qt6UiTools)"
status=0
for header in $(cd "$source/src" && find . -name '*.h' | sort); do
    echo "#include \"${header#./}\"" | $compiler $flags -x c++ - || { echo "$header doesn't compile alone"; status=1; }
done
exit $status
