#!/usr/bin/env bash
# Takes a screenshot of the drawing canvas's window under a virtual display:
#   canvas-shapes.png       a page of every shape type, the fills (solid,
#                           shades, texture, every hatch with the plan
#                           hatches), line styles and weights, arrow heads,
#                           shadows and lenses.
#   canvas-pattern-dialog.png  the pattern dialog with its hatch samples.
#   canvas-main-window.png  the main window after drawing on its canvas with
#                           the mouse: a wall rectangle, its right side
#                           dragged out by a handle, and a text typed in place.
# The page is built and shown by the canvas showcase test of the view layer,
# which saves the screen when TESSALY_CANVAS_SCREENSHOT names a file; the
# main window is the desktop program on a fresh application home.
# Usage: scripts/screenshot-canvas.sh [build-dir] [output-dir]
source "$(dirname "$0")/screenshot-setup.sh"
exe="$PWD/$build/tests/ui/canvas_ui_tests"
need_programs "no test program at $exe: build canvas_ui_tests first" "$exe"
TESSALY_CANVAS_SCREENSHOT="$out/canvas-shapes.png" view_tests "$exe" 'CanvasShowcase.*'

exe="$PWD/$build/app/tessaly/tessaly"
need_programs "no program at $exe: build tessaly for canvas-main-window.png" "$exe"
temp_home
"$exe" --install --home "$home"
# The steps inside the virtual display: the tool buttons sit at fixed places
# of the 1280 by 1024 screen (no window manager, no title bars).
cat >"$home/draw.sh" <<'DRAW'
set -euo pipefail
exe=$1 home=$2 out=$3
source "$4"
launch_program "$exe" "$home"
# The rectangle tool, then a drag on the page.
xdotool mousemove 16 95 click 1
sleep 0.3
xdotool mousemove 400 300 mousedown 1 mousemove 450 350 mousemove 600 450 mouseup 1
sleep 0.3
# The select tool; the rectangle's right handle dragged 100 pixels out.
xdotool mousemove 383 33 click 1
sleep 0.3
xdotool mousemove 500 375 click 1
sleep 0.3
# The handle stands 6 pixels outside the side; the side follows the pointer.
xdotool mousemove 606 375 mousedown 1 mousemove 656 375 mousemove 706 375 mouseup 1
sleep 0.3
# The text tool: a box dragged out and a word typed into it.
xdotool mousemove 148 95 click 1
sleep 0.3
xdotool mousemove 480 400 mousedown 1 mousemove 520 410 mousemove 600 425 mouseup 1
sleep 0.5
xdotool type "Kitchen"
xdotool key ctrl+Return
sleep 0.5
import -window root "$out/canvas-main-window.png"
DRAW
run_steps "$home/draw.sh"
ls -l "$out"/canvas-*.png
