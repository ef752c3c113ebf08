#!/usr/bin/env bash
# Opens Ormund's editor in Ardour 7 on a screen of its own, lets the transport roll, and takes a
# picture of it: tools/hosts/ardour-editor.sh [LXVST|LV2|VST3] [PICTURE.png]
# Needs the Debian packages "ardour", "xvfb", "openbox", "xdotool" and "imagemagick". Where to click
# is counted in pixels of Ardour 7.3 at 1600 x 1000.
set -euo pipefail
cd "$(dirname "$0")/../.."
format=${1:-LXVST}
picture=$(realpath -m "${2:-ardour-$format.png}")
session=$(tools/hosts/ardour.sh 8 "$format" | sed -n 's/^The session is in \(.*\)\.$/\1/p')
work=$(dirname "$session")
export HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache XDG_DATA_HOME=$work/data
export LXVST_PATH=$PWD/build/bin LV2_PATH=/usr/lib/lv2:$work/lv2 XDG_RUNTIME_DIR=$work

# No questions of a first start, and the engine that needs no sound card.
mkdir -p "$XDG_CONFIG_HOME/ardour7"
touch "$XDG_CONFIG_HOME/ardour7/.a7"
cat >"$XDG_CONFIG_HOME/ardour7/config" <<'XML'
<?xml version="1.0" encoding="UTF-8"?>
<Ardour>
  <Config>
    <Option name="hide-dummy-backend" value="0"/>
  </Config>
  <Extra>
    <AudioMIDISetup>
      <EngineStates>
        <State backend="None (Dummy)" driver="" device="Normal Speed" input-device="" output-device="" sample-rate="48000" buffer-size="1024" n-periods="0" input-latency="0" output-latency="0" input-channels="0" output-channels="0" active="1" use-buffered-io="0" midi-option="1 in, 1 out, Silence" lru="1" autostart="1"/>
      </EngineStates>
    </AudioMIDISetup>
  </Extra>
</Ardour>
XML

. tools/hosts/screen.sh
start_screen 1600x1000 "$work"
ardour --no-splash --no-announcements "$session/ormund.ardour" >"$work/ardour.log" 2>&1 &
started+=($!)

click() { # X Y TIMES, then SECONDS to wait
  xdotool mousemove "$1" "$2" click --repeat "$3" --delay 80 1
  sleep "$4"
}
sleep 15
click 972 560 1 6   # another engine than the session's: OK
click 1006 671 1 12 # start the engine
click 1452 224 1 4  # the mixer
click 460 338 2 6   # the plug-in on the first strip
xdotool key space   # roll
sleep 3
import -window root "$picture"
echo "The picture is $picture."
