#!/usr/bin/env bash
# Opens Ormund's editor in jalv on a screen and a JACK server of its own, lets the transport roll,
# takes a picture and writes down the MIDI that arrives: tools/hosts/jalv.sh [PICTURE.png]
# Needs the Debian packages "jalv", "jackd2", "jack-example-tools", "xvfb", "openbox", "xdotool" and
# "imagemagick".
set -euo pipefail
cd "$(dirname "$0")/../.."
picture=$(realpath -m "${1:-jalv.png}")
work=$(mktemp -d)
export HOME=$work XDG_RUNTIME_DIR=$work JACK_DEFAULT_SERVER=ormund-$$
mkdir "$work/lv2"
cp -rp build/bin/ormund.lv2 "$work/lv2/"
export LV2_PATH=/usr/lib/lv2:$work/lv2

started=()
trap 'kill "${started[@]}" 2>/dev/null || true' EXIT
Xvfb -displayfd 1 -screen 0 1100x860x24 -nolisten tcp >"$work/display" 2>/dev/null &
started+=($!)
until [ -s "$work/display" ]; do sleep 0.1; done
DISPLAY=:$(cat "$work/display")
export DISPLAY
openbox >/dev/null 2>&1 &
started+=($!)
jackd -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 512 >"$work/jackd.log" 2>&1 &
started+=($!)
sleep 2
jalv.gtk3 urn:kelda-works:ormund >"$work/jalv.log" 2>&1 &
started+=($!)
sleep 8
jack_midi_dump ormund-dump >"$work/midi.txt" 2>&1 &
started+=($!)
sleep 1
jack_lsp | grep -i ormund
jack_connect "Ormund:lv2_events_out" ormund-dump:input
jack_transport <<<"play" >/dev/null 2>&1 || true
sleep 5
import -window root "$picture"
echo "MIDI messages: $(grep -c : "$work/midi.txt")"
head -4 "$work/midi.txt"
echo "The picture is $picture."
