#!/usr/bin/env bash
# Runs the recorded sessions in tests/data/recordings and tests/data/routes, or with --renew writes their screens, and the
# whole of the latter, anew: look at what git then shows as changed before you keep it.
# Usage: scripts/recordings.sh [--renew]
set -euo pipefail
cd "$(dirname "$0")/.."
[ "${1:-}" != --renew ] || export CORVEX_RENEW_RECORDINGS=1
[ -f build/debug/build.ninja ] || cmake --preset debug -DCORVEX_DESKTOP=OFF >/dev/null
cmake --build --preset debug --target corvex_tests
build/debug/bin/corvex_tests --gtest_filter='*RecordingsTest*:*RoutesTest.Passes*'
