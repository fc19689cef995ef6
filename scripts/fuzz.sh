#!/usr/bin/env bash
# Builds the fuzz targets and runs each for the given time. What they find is left in build/fuzz/findings.
# Usage: scripts/fuzz.sh [SECONDS] [TARGET...]     60 seconds and all targets if not told otherwise
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
  # New inputs go to the first folder; the seeds in the tree stay as they are.
  "build/fuzz/bin/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -verbosity=0 -artifact_prefix="build/fuzz/findings/$target-" \
    "build/fuzz/corpus/$target" "fuzz/corpus/$target"
done
