#!/usr/bin/env bash
# Builds all of a preset, or only the targets named.
# Usage: scripts/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift

# Whether the folder was configured for this place, with the windows and the tests. One that was not would fail, or
# build less than it should without a word.
configured() {
  local cache="build/$preset/CMakeCache.txt"
  [ -f "build/$preset/build.ninja" ] && [ -f "$cache" ] &&
    grep -qxF -e "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" -e "CMAKE_HOME_DIRECTORY:INTERNAL=$(pwd -P)" "$cache" &&
    grep -qx 'CORVEX_DESKTOP:BOOL=ON' "$cache" && grep -qx 'BUILD_TESTING:BOOL=ON' "$cache"
}

echo "== Building ($preset)"
configured || cmake --fresh --preset "$preset" >/dev/null
[ $# -eq 0 ] || set -- --target "$@"
cmake --build --preset "$preset" "$@"
