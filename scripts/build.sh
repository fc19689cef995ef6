#!/usr/bin/env bash
# Builds all targets of a preset, or only the named ones.
# Usage: scripts/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift

# Whether the build folder was configured for this source folder, with windows and tests. Otherwise the build
# would fail, or silently build less than it should.
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
