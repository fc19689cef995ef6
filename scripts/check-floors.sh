#!/usr/bin/env bash
# Fails if a file includes one from another room that is not on a lower floor, or if headers include each
# other in a cycle. The table in docs/architecture.md defines rooms and floors.
set -euo pipefail
cd "$(dirname "$0")/.."
table=docs/architecture.md

# Prints each include as "FILE INCLUDED". Paths are relative to src/; those of the simulator start with
# simulator/.
includes() {
  find src simulator -name '*.cpp' -o -name '*.h' | sort | while read -r file; do
    sed -n 's|^#include "\(.*\)".*|\1|p' "$file" | while read -r included; do
      case $file in simulator/*) included=$(sed 's#^\(unit\|host\)/#simulator/\1/#' <<<"$included") ;; esac
      echo "${file#src/} $included"
    done
  done
}

includes | awk '
  # The room of a file is the longest folder of its path that is in the table.
  function room(path) {
    while (sub("/[^/]*$", "", path)) if (path in floor) return path
    return ""
  }
  FNR == NR {
    if (split($0, cell, "|") < 4 || cell[2] !~ /^ *[0-9]+ *$/) next
    while (match(cell[3], /`[^`]+\/`/)) {
      floor[substr(cell[3], RSTART + 1, RLENGTH - 3)] = cell[2] + 0
      ++rooms
      cell[3] = substr(cell[3], RSTART + RLENGTH)
    }
    next
  }
  {
    from = room($1); to = room($2)
    if (from == "") fault = "its folder is not in the table"
    else if (to == "") fault = "the folder of " $2 " is not in the table"
    else if (from != to && floor[to] >= floor[from]) fault = "includes " $2 ", which is not on a lower floor"
    else next
    print $1 ": " fault
    ++faults
  }
  END {
    if (rooms < 2) { print "table of floors not found"; exit 1 }
    exit faults > 0
  }' "$table" -

if ! circle=$(includes | awk '$1 ~ /\.h$/' | tsort 2>&1 >/dev/null); then
  echo "Headers that include each other in a cycle: $circle"
  exit 1
fi
