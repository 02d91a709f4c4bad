#!/usr/bin/env bash
# First command of the README: installs the dependencies, builds, lays out
# the application home and starts the desktop application.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh
./build/app/tessaly/tessaly --install "$@"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  cat <<MSG
There is no display here, so the desktop window cannot open.
Start Tessaly under a virtual display instead:

  xvfb-run -a -s "-screen 0 1280x1024x24" ./build/app/tessaly/tessaly $*

MSG
  exit 0
fi
exec ./build/app/tessaly/tessaly "$@"
