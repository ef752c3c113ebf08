#!/usr/bin/env bash
# Installs what packages.txt lists, as root or through sudo, and nothing where all of it is there.
# With --to-build it leaves out the last section, which only checks and packages need.
set -euo pipefail
cd "$(dirname "$0")/.."
list=$(cat packages.txt)
[ "${1:-}" != --to-build ] || list=${list%%# checks*}
mapfile -t wanted < <(grep -v -E '^\s*(#|$)' <<<"$list")
missing=()
for package in "${wanted[@]}"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -q
DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
