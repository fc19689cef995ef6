#!/usr/bin/env bash
# Installs missing packages, builds the program, and starts it on the simulated terminal unit. Without a display,
# it uses a virtual one: the unit plays a short session, and a picture of it is saved in build/demo.png.
# Usage: ./run.sh [--serial]     --serial: over a pseudo terminal at 115200 baud instead of TCP
set -euo pipefail
cd "$(dirname "$0")"
route=lan
case "${1:-}" in
  '') ;;
  --serial) route=serial ;;
  *) echo "Usage: ./run.sh [--serial]" >&2; exit 2 ;;
esac
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

headless=
[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || headless=yes
packages=("${packages_build[@]}" "${packages_run[@]}")
[ -z "$headless" ] || packages+=("${packages_display[@]}")
scripts/ensure-packages.sh "${packages[@]}"
scripts/build.sh release corvex corvex-simulator

# A copied executable is a separate installation with its own settings.
demo=build/demo
mkdir -p "$demo"
cp -u build/release/bin/corvex "$demo/corvex"
if [ -n "$headless" ]; then
  scripts/with-display.sh scripts/demo.sh "$demo" "$route" pictures
else
  scripts/demo.sh "$demo" "$route"
fi
