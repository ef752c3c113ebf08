#!/usr/bin/env bash
# Records Ormund in Ardour 7 without a screen: tools/hosts/ardour.sh [SECONDS] [LXVST|LV2|VST3]
# Needs the Debian package "ardour". Everything it writes goes to a folder of its own.
set -euo pipefail
cd "$(dirname "$0")/../.."
module_folder=$PWD/build/bin
work=$(mktemp -d)
export HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache XDG_DATA_HOME=$work/data
mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_DATA_HOME"
export LXVST_PATH=$module_folder ORMUND_SESSION=$work/ormund ORMUND_SECONDS=${1:-8}
export ORMUND_FORMAT=${2:-LXVST} LD_LIBRARY_PATH=/usr/lib/ardour7 LV2_PATH=/usr/lib/lv2:$work/lv2
mkdir -p "$work/lv2" "$HOME/.vst3"
cp -rp "$module_folder/ormund.lv2" "$work/lv2/"
cp -rp "$module_folder/ormund.vst3" "$HOME/.vst3/"
case $ORMUND_FORMAT in
LXVST) /usr/lib/ardour7/ardour-vst-scanner -f "$module_folder/ormund-vst2.so" ;;
VST3) /usr/lib/ardour7/ardour-vst3-scanner -f "$HOME/.vst3/ormund.vst3" ;;
esac
unset LD_LIBRARY_PATH
ardour7-lua tools/hosts/ardour-record.lua

# The same eight bars again, rendered as fast as it goes.
ardour7-export -b 16 -o "$work/export.wav" "$work/ormund" ormund
python3 - "$work/export.wav" <<'PYTHON'
import array, sys, wave
with wave.open(sys.argv[1]) as file:
    samples = array.array("h", file.readframes(file.getnframes()))
    print("exported", file.getnframes(), "frames, peak", round(max(map(abs, samples)) / 32768, 4))
PYTHON
echo "The session is in $ORMUND_SESSION."
