#!/usr/bin/env bash
# Runs the recorded sessions in tests/data/recordings, tests/data/routes and tests/data/test-log. With --renew,
# rewrites their expected results instead: the screens of the recordings, and all of routes and test-log. Check
# the changes with git before you keep them.
# Usage: scripts/recordings.sh [--renew]
set -euo pipefail
cd "$(dirname "$0")/.."
[ "${1:-}" != --renew ] || export CORVEX_RENEW_RECORDINGS=1
[ -f build/debug/build.ninja ] || cmake --preset debug -DCORVEX_DESKTOP=OFF >/dev/null
cmake --build --preset debug --target corvex_tests
build/debug/bin/corvex_tests --gtest_filter='*RecordingsTest*:*RoutesTest.Passes*:*DeviceVisitTest.Passes*:TestLogTest.Walks*'
