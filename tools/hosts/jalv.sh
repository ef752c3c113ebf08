#!/usr/bin/env bash
# Opens Ormund's editor in jalv on a screen and a JACK server of its own, lets the transport roll,
# takes a picture and records the MIDI and the sound that arrive: tools/hosts/jalv.sh [PICTURE.png]
# Needs the Debian packages "jalv", "jackd2", "xvfb", "openbox", "xdotool", "imagemagick" and "sox".
set -euo pipefail
cd "$(dirname "$0")/../.."
picture=$(realpath -m "${1:-jalv.png}")
work=$(mktemp -d)
export HOME=$work XDG_RUNTIME_DIR=$work JACK_DEFAULT_SERVER=ormund-$$
mkdir "$work/lv2"
cp -rp build/bin/ormund.lv2 "$work/lv2/"
export LV2_PATH=/usr/lib/lv2:$work/lv2

. tools/hosts/screen.sh
start_screen 1100x860 "$work"
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
jack_rec -f "$work/sound.wav" -d 4 -b 16 Ormund:lv2_audio_out_1 >/dev/null 2>&1
sox "$work/sound.wav" -n stat 2>&1 | grep "Maximum amplitude"
echo "The picture is $picture."
