#!/usr/bin/env bash
# Screenshots of the exports under a virtual display:
#   export-menu.png        the main window with File > Export open over a
#                          drawing made with the mouse (a rectangle and a text)
#   export-pdf-done.png    the message after File > Export > Export To PDF Document
#   report-viewer.png      the report viewer showing the landscape export
#                          layout of a plan (the viewer test of the view layer
#                          saves the screen when TESSALY_VIEWER_SCREENSHOT names a file)
# and the PDF the menu wrote, rendered by pdftoppm: export-pdf-page.png.
# Usage: scripts/screenshot-exports.sh [build-dir] [output-dir]
source "$(dirname "$0")/screenshot-setup.sh"

tests="$PWD/$build/tests/ui/ui_tests"
need_programs "no test program at $tests: build ui_tests first" "$tests"
TESSALY_VIEWER_SCREENSHOT="$out/report-viewer.png" view_tests "$tests" 'ReportViewerTest.TheLandscapeExportLayoutOfAPlan'

exe="$PWD/$build/app/tessaly/tessaly"
need_programs "no program at $exe: build first" "$exe"
temp_home
"$exe" --install --home "$home"
# The steps inside the virtual display: the tool buttons sit at fixed places
# of the 1280 by 1024 screen (no window manager, no title bars); the menus
# are opened by their keys.
cat >"$home/export.sh" <<'EXPORT'
set -euo pipefail
exe=$1 home=$2 out=$3
source "$4"
launch_program "$exe" "$home"
# A rectangle and a text on the page.
xdotool mousemove 16 95 click 1
sleep 0.3
xdotool mousemove 300 250 mousedown 1 mousemove 500 400 mousemove 800 600 mouseup 1
sleep 0.3
xdotool mousemove 148 95 click 1
sleep 0.3
xdotool mousemove 420 380 mousedown 1 mousemove 500 400 mousemove 640 430 mouseup 1
sleep 0.5
xdotool type "Kitchen"
xdotool key ctrl+Return
sleep 0.5
# File > Export.
xdotool key alt+f
sleep 0.5
xdotool key e
sleep 0.8
import -window root "$out/export-menu.png"
# Export To PDF Document: the second entry; the save dialog takes the path.
xdotool key Down Return
sleep 1.5
xdotool type --delay 20 "$home/plan.pdf"
xdotool key Return
sleep 2
import -window root "$out/export-pdf-done.png"
xdotool key Return
sleep 0.5
EXPORT
run_steps "$home/export.sh"
pdfinfo "$home/plan.pdf" | grep -E '^(Pages|Page size)'
pdftoppm -r 60 -png -singlefile "$home/plan.pdf" "$out/export-pdf-page"
ls -l "$out"/export-*.png "$out"/report-viewer.png
