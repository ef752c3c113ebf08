#!/usr/bin/env bash
# Records the VST2 module in Ardour 7 without a screen: tools/hosts/ardour.sh [SECONDS]
# Needs the Debian package "ardour". Everything it writes goes to a folder of its own.
set -euo pipefail
cd "$(dirname "$0")/../.."
module_folder=$PWD/build/bin
work=$(mktemp -d)
export HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache XDG_DATA_HOME=$work/data
mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_DATA_HOME"
export LXVST_PATH=$module_folder ORMUND_SESSION=$work/ormund ORMUND_SECONDS=${1:-8}
LD_LIBRARY_PATH=/usr/lib/ardour7 /usr/lib/ardour7/ardour-vst-scanner -f "$module_folder/ormund-vst2.so"
ardour7-lua tools/hosts/ardour-record.lua
echo "The session is in $ORMUND_SESSION."
