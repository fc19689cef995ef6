#!/usr/bin/env bash
# Installs missing packages, builds, and runs all tests. Tests with windows run on a virtual display.
# Usage: ./test.sh [PRESET]     release (default), debug or asan
set -euo pipefail
cd "$(dirname "$0")"
preset=${1:-release}
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

scripts/ensure-packages.sh "${packages_build[@]}" "${packages_run[@]}" "${packages_display[@]}"
scripts/build.sh "$preset"
echo "== Testing ($preset)"
scripts/with-display.sh ctest --preset "$preset" -j "$(nproc)"
