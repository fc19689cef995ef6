#!/usr/bin/env bash
# Runs the recorded sessions in tests/data/recordings, tests/data/routes and tests/data/test-log, or with --renew writes
# the screens of the first, and the whole of the others, anew: look at what git then shows as changed before you keep it.
# Usage: scripts/recordings.sh [--renew]
set -euo pipefail
cd "$(dirname "$0")/.."
[ "${1:-}" != --renew ] || export CORVEX_RENEW_RECORDINGS=1
[ -f build/debug/build.ninja ] || cmake --preset debug -DCORVEX_DESKTOP=OFF >/dev/null
cmake --build --preset debug --target corvex_tests
build/debug/bin/corvex_tests --gtest_filter='*RecordingsTest*:*RoutesTest.Passes*:TestLogTest.Walks*'
