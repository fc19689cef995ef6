#!/usr/bin/env bash
# Runs a command on a new virtual display with a window manager. Exits with the command's status.
# Usage: scripts/with-display.sh COMMAND [ARGUMENT...]
set -euo pipefail

folder=$(mktemp -d)
xvfb=
openbox=
cleanup() {
  [ -z "$openbox" ] || kill "$openbox" 2>/dev/null || true
  [ -z "$xvfb" ] || kill "$xvfb" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$folder"
}
trap cleanup EXIT

# The server chooses a free display and writes its number. -noreset: by default the server resets when its
# last client disconnects, and rejects clients while it does. The check for the window manager below may be
# its only client.
Xvfb -displayfd 3 -noreset -screen 0 1600x1000x24 -nolisten tcp 3>"$folder/display" >"$folder/xvfb.log" 2>&1 &
xvfb=$!
for _ in $(seq 100); do
  [ -s "$folder/display" ] && break
  kill -0 "$xvfb" 2>/dev/null || { cat "$folder/xvfb.log" >&2; exit 1; }
  sleep 0.1
done
[ -s "$folder/display" ] || { echo "The virtual display did not start" >&2; exit 1; }
DISPLAY=":$(cat "$folder/display")"
export DISPLAY
unset WAYLAND_DISPLAY
export QT_QPA_PLATFORM=xcb
openbox --sm-disable >"$folder/openbox.log" 2>&1 &
openbox=$!
managed() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
for _ in $(seq 100); do
  managed && break
  sleep 0.1
done
managed || { echo "The window manager did not start" >&2; cat "$folder/openbox.log" >&2; exit 1; }

"$@"
