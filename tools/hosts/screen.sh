# Sourced: a screen of its own, WIDTHxHEIGHT, with a window manager, until the script ends. What else
# the script starts and adds to `started` ends with it.
started=()
trap 'kill "${started[@]}" 2>/dev/null || true' EXIT
start_screen() { # WIDTHxHEIGHT FOLDER
  Xvfb -displayfd 1 -screen 0 "$1x24" -nolisten tcp >"$2/display" 2>/dev/null &
  started+=($!)
  until [ -s "$2/display" ]; do sleep 0.1; done
  DISPLAY=:$(cat "$2/display")
  export DISPLAY
  openbox >/dev/null 2>&1 &
  started+=($!)
}
