#!/usr/bin/env bash
# Starts the simulated terminal unit and the program. When the program ends, the unit is stopped.
# Usage: scripts/demo.sh FOLDER lan|serial [pictures]
#   FOLDER    the folder of the program; its settings are written there too
#   pictures  let the unit play a short session, take pictures of its screens, and close the window
set -euo pipefail
cd "$(dirname "$0")/.."
demo=$1
route=$2
pictures=${3:-}

unit=
program=
cleanup() {
  [ -z "$program" ] || kill "$program" 2>/dev/null || true
  [ -z "$unit" ] || kill "$unit" 2>/dev/null || true
}
trap cleanup EXIT

line=(--tcp 0)
[ "$route" = lan ] || line=(--pty --speed 115200)
build/release/bin/corvex-simulator "${line[@]}" --tour >"$demo/unit.log" 2>&1 &
unit=$!
for _ in $(seq 100); do
  grep -qE '^(listening on|pseudo terminal)' "$demo/unit.log" && break
  kill -0 "$unit" 2>/dev/null || { cat "$demo/unit.log" >&2; exit 1; }
  sleep 0.1
done
where=$(head -n 1 "$demo/unit.log")
[ -n "$where" ] || { echo "The simulated unit did not start" >&2; exit 1; }
echo "== The simulated unit: $where"

# Switch the recording on, so that this script can see what the unit has sent.
rm -f "$demo"/wire-*.log
{
  # Show all menus, including those for service engineers.
  printf '[logging]\r\nwirelog=yes\r\n[config]\r\ntestmode=yes\r\ntrace=yes\r\n'
  if [ "$route" = lan ]; then
    printf 'lan=yes\r\nlanaddress=127.0.0.1\r\nlanport=%s\r\n' "${where##*:}"
  else
    printf 'lan=no\r\n[devices]\r\ncom1=%s\r\n' "${where##* }"
  fi
} >"$demo/corvex.ini"

echo "== The program"
"$demo/corvex" &
program=$!
if [ -z "$pictures" ]; then
  wait "$program"
  program=
  exit
fi

# Waits until the unit has sent a text, gives the window some seconds to show it, and takes a picture.
picture() {
  local name=$1 sent=$2 delay=$3
  for _ in $(seq 300); do
    grep -qF "$sent" "$demo"/wire-*.log 2>/dev/null && break
    kill -0 "$program" 2>/dev/null || { echo "The program has ended" >&2; exit 1; }
    sleep 0.1
  done
  grep -qF "$sent" "$demo"/wire-*.log || { echo "The unit did not send $sent" >&2; exit 1; }
  sleep "$delay"
  import -window root -crop "$area" +repage "build/demo-$name.png"
}

window=$(timeout 20 xdotool search --sync --onlyvisible --pid "$program" | tail -n 1)
xdotool windowmove --sync "$window" 40 60
eval "$(xdotool getwindowgeometry --shell "$window")"
area="$((WIDTH + 20))x$((HEIGHT + 50))+$((X - 10))+$((Y - 40))"
picture 1-text "<TextScreen>" 1.5
picture 2-menu "<MenuScreen><Title>Main menu" 0.7
picture 3-choice "<ChoiceScreen>" 0.7
picture 4-message "<MsgScreen>" 0.5
picture 5-message-gone "<MsgScreen>" 2.2
echo "== Title of the window: $(xdotool getwindowname "$window")"
montage build/demo-[1-4]-*.png -tile 2x2 -geometry +8+8 -background '#808080' build/demo.png
echo "== Pictures: build/demo.png and build/demo-*.png"

wmctrl -i -c "$window"
for _ in $(seq 50); do
  kill -0 "$program" 2>/dev/null || break
  sleep 0.1
done
kill -0 "$program" 2>/dev/null && { echo "The program did not end" >&2; exit 1; }
wait "$program" && status=0 || status=$?
program=
[ "$status" -eq 0 ] || { echo "The program ended with status $status" >&2; exit 1; }
