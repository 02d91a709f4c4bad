#!/usr/bin/env bash
# Takes screenshots of the drawing files under a virtual display:
#   files-menu.png         the File menu with every entry, its Non Project
#                          group open
#   files-exit-prompt.png  the question at exit after a change to a free drawing
#   files-converter.png    the image converter with a loaded picture and a
#                          picked colour (its menu entry is disabled in the
#                          program, so the view test of the window shows it)
# Usage: scripts/screenshot-files.sh [build-dir] [output-dir]
# The program runs on a fresh application home made by `tessaly --install`.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
out=${2:-docs/screenshots}
exe="$PWD/$build/app/tessaly/tessaly"
tests="$PWD/$build/tests/ui/ui_tests"
[ -x "$exe" ] || { echo "no program at $exe: build first" >&2; exit 1; }
[ -x "$tests" ] || { echo "no view tests at $tests: build ui_tests first" >&2; exit 1; }
mkdir -p "$out"
out=$(cd "$out" && pwd)
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
"$exe" --install --home "$home"

# The steps inside the virtual display: 1280 by 1024, no window manager, so
# the main window fills the screen without a title bar.
cat >"$home/shoot.sh" <<'SHOOT'
set -euo pipefail
exe=$1 home=$2 out=$3
"$exe" --home "$home" &
pid=$!
trap 'kill "$pid" 2>/dev/null || true' EXIT
xdotool search --sync --onlyvisible --name '^Tessaly - ' >/dev/null
sleep 1
main=$(xdotool search --onlyvisible --name '^Tessaly - ' | head -1)
eval "$(xdotool getwindowgeometry --shell "$main")"
menu_y=$((Y + 10))
# The File menu, and its first entry "Non Project" opened.
xdotool mousemove $((X + 18)) $menu_y click 1
sleep 0.7
xdotool mousemove $((X + 60)) $((menu_y + 24))
sleep 1
import -window root "$out/files-menu.png"
xdotool key Escape Escape
sleep 0.5
# A rectangle drawn on the page: the drawing has changed.
xdotool mousemove 16 95 click 1
sleep 0.3
xdotool mousemove 500 350 mousedown 1 mousemove 560 400 mousemove 700 500 mouseup 1
sleep 0.5
# File > Exit by its access keys: the question comes up.
xdotool key alt+f
sleep 0.5
xdotool key x
sleep 1
import -window root "$out/files-exit-prompt.png"
# No: the program ends.
xdotool key n
sleep 1
SHOOT
xvfb-run -a -s "-screen 0 1280x1024x24" bash "$home/shoot.sh" "$exe" "$home" "$out"

TESSALY_FILES_SCREENSHOT_DIR="$out" QT_QPA_PLATFORM=xcb \
  xvfb-run -a -s "-screen 0 1280x1024x24" \
  "$tests" --gtest_filter='ImageConverterView.*'
ls -l "$out"/files-*.png
