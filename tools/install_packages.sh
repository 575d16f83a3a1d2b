#!/bin/sh
# Installs what is missing of tools/packages.txt (and of further lists named as arguments). Asks the network only when
# something is missing.
set -eu
here=$(dirname "$0")
wanted=$(cat "$here/packages.txt" "$@" | sed 's/#.*//' | tr -s ' \t' '\n' | sed '/^$/d')
missing=""
for package in $wanted; do
    state=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
    [ "$state" = "install ok installed" ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0
echo "Installing:$missing"
as_root=""
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "These packages are missing and need root to install:$missing" >&2; exit 1; }
    as_root="sudo"
fi
$as_root apt-get update -qq
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null
