#!/usr/bin/env bash
# Measures the program's window on the current display and compares it with a bare Qt window: time from start
# to mapped, memory, and processor time while idle in a session with the simulated unit, which ticks once a
# second. The runs of the two programs alternate.
# Usage: scripts/with-display.sh bench/window.sh [RUNS]     after a release build with -DCORVEX_BENCH=ON
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-7}
bin=$PWD/build/release/bin
folder=$(mktemp -d)
trap 'kill "$unit" 2>/dev/null || true; rm -rf "$folder"' EXIT
cp "$bin/corvex" "$folder/"
"$bin/corvex-simulator" --tcp 0 >"$folder/unit.log" &
unit=$!
until grep -q listening "$folder/unit.log"; do sleep 0.1; done
printf '[config]\r\nlan=yes\r\nlanaddress=127.0.0.1\r\nlanport=%s\r\n' \
  "$(sed -n 's/.*://p' "$folder/unit.log")" >"$folder/corvex.ini"

memory() { awk '/^Rss:/ {r = $2} /^Pss:/ {p = $2} END {printf "RSS %.1f MB, PSS %.1f MB", r / 1024, p / 1024}' \
  "/proc/$1/smaps_rollup"; }
ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }

start() {
  local class=$1 begin end
  shift
  begin=$(date +%s%N)
  "$@" >/dev/null 2>&1 &
  program=$!
  until xdotool search --onlyvisible --class "^$class\$" >/dev/null 2>&1; do :; done
  end=$(date +%s%N)
  echo "$class: mapped after $(((end - begin) / 1000000)) ms"
}
stop() {
  kill "$program"
  wait "$program" 2>/dev/null || true
}

for _ in $(seq "$runs"); do
  start BareWindow "$bin/BareWindow"
  sleep 0.5
  echo "BareWindow: $(memory "$program")"
  stop
  start corvex "$folder/corvex"
  sleep 0.5
  echo "corvex: $(memory "$program")"
  stop
done | sort

start corvex "$folder/corvex" >/dev/null
sleep 5
echo "corvex in a session: $(memory "$program")"
before=$(ticks "$program")
sleep 20
after=$(ticks "$program")
echo "corvex in a session: $((after - before)) ticks of $((20 * $(getconf CLK_TCK))) in 20 s"
stop
