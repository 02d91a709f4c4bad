#!/usr/bin/env bash
# Takes a screenshot of the drawing canvas's window under a virtual display:
#   canvas-shapes.png  a page of every shape type, the fills (solid, shades,
#                      texture, every hatch with the plan hatches), line
#                      styles and weights, arrow heads, shadows and lenses.
# The page is built and shown by the canvas showcase test of the view layer,
# which saves the screen when TESSALY_CANVAS_SCREENSHOT names a file.
# Usage: scripts/screenshot-canvas.sh [build-dir] [output-dir]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
out=${2:-docs/screenshots}
exe="$PWD/$build/tests/ui/canvas_ui_tests"
[ -x "$exe" ] || { echo "no test program at $exe: build canvas_ui_tests first" >&2; exit 1; }
mkdir -p "$out"
out=$(cd "$out" && pwd)
TESSALY_CANVAS_SCREENSHOT="$out/canvas-shapes.png" QT_QPA_PLATFORM=xcb \
  xvfb-run -a -s "-screen 0 1280x1024x24" \
  "$exe" --gtest_filter='CanvasShowcase.*'
ls -l "$out/canvas-shapes.png"
