#!/usr/bin/env bash
# Builds the fuzz targets and runs each for the given time. Inputs that cause failures are saved in
# build/fuzz/findings.
# Usage: scripts/fuzz.sh [SECONDS] [TARGET...]     default: 60 seconds, all targets
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true

[ -f build/fuzz/build.ninja ] || cmake --preset fuzz -DBUILD_TESTING=OFF >/dev/null
cmake --build --preset fuzz
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for source in fuzz/*Fuzz.cpp; do targets+=("$(basename "$source" .cpp)"); done
fi
for target in "${targets[@]}"; do
  echo "== $target, $seconds s"
  mkdir -p "build/fuzz/corpus/$target" build/fuzz/findings
  # New inputs are saved in the first folder. The seeds in the source tree do not change.
  "build/fuzz/bin/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -verbosity=0 -artifact_prefix="build/fuzz/findings/$target-" \
    "build/fuzz/corpus/$target" "fuzz/corpus/$target"
done
