#!/usr/bin/env bash
# Takes screenshots of the desktop program under a virtual display:
#   splash.png       the splash window
#   main-window.png  the main window after the splash
#   menu-file.png    the same with the File menu open
#   menu-view.png    the same with the View menu open
#   settings.png     the settings window (View > Software Settings...)
#   files-menu.png         the File menu with every entry, Non Project open
#   files-exit-prompt.png  the question at exit after a change to a free drawing
#   files-converter.png    the image converter with a loaded picture and a
#                          picked colour (its menu entry is disabled in the
#                          program, so the view test of the window shows it;
#                          taken when build/tests/ui/ui_tests exists)
# Usage: scripts/screenshot.sh [build-dir] [output-dir]
# The program runs on a fresh application home made by `tessaly --install`.
source "$(dirname "$0")/screenshot-setup.sh"
exe="$PWD/$build/app/tessaly/tessaly"
need_programs "no program at $exe: build first" "$exe"
temp_home
"$exe" --install --home "$home"

# The steps inside the virtual display. The screen is 1280 by 1024, so the
# main window fills it; there is no window manager, so windows show without
# title bars.
cat >"$home/shoot.sh" <<'SHOOT'
set -euo pipefail
exe=$1 home=$2 out=$3
"$exe" --home "$home" &
pid=$!
trap 'kill "$pid" 2>/dev/null || true' EXIT
# The splash first: it has no title, so it is found by the program's class.
splash=$(xdotool search --sync --onlyvisible --class tessaly | head -1)
sleep 0.5
import -window "$splash" "$out/splash.png"
# The main window comes up when the splash's two-second timer fires.
xdotool search --sync --onlyvisible --name '^Tessaly - ' >/dev/null
sleep 1
import -window root "$out/main-window.png"
main=$(xdotool search --onlyvisible --name '^Tessaly - ' | head -1)
eval "$(xdotool getwindowgeometry --shell "$main")"
menu_y=$((Y + 10))
# The File menu: the first entry of the menu bar.
xdotool mousemove $((X + 18)) $menu_y click 1
sleep 1
import -window root "$out/menu-file.png"
xdotool key Escape
sleep 0.5
# The View menu: the third entry.
xdotool mousemove $((X + 90)) $menu_y click 1
sleep 1
import -window root "$out/menu-view.png"
# Its last entry is "Software Settings...".
xdotool key Up Return
xdotool search --sync --onlyvisible --name '^Settings$' >/dev/null
sleep 1
import -window root "$out/settings.png"

# The drawing files, on a fresh start of the program.
kill "$pid"
wait "$pid" 2>/dev/null || true
"$exe" --home "$home" &
pid=$!
xdotool search --sync --onlyvisible --name '^Tessaly - ' >/dev/null
sleep 1
# The File menu, and its first entry "Non Project" opened.
xdotool mousemove $((X + 18)) $menu_y click 1
sleep 0.7
xdotool mousemove $((X + 60)) $((menu_y + 24))
sleep 1
import -window root "$out/files-menu.png"
xdotool key Escape Escape
sleep 0.5
# A rectangle drawn on the page, then File > Exit by its access keys.
xdotool mousemove 16 95 click 1
sleep 0.3
xdotool mousemove 500 350 mousedown 1 mousemove 560 400 mousemove 700 500 mouseup 1
sleep 0.5
xdotool key alt+f
sleep 0.5
xdotool key x
sleep 1
import -window root "$out/files-exit-prompt.png"
# No: the program ends.
xdotool key n
sleep 1
SHOOT
run_steps "$home/shoot.sh"

tests="$PWD/$build/tests/ui/ui_tests"
if [ -x "$tests" ]; then
  TESSALY_FILES_SCREENSHOT_DIR="$out" view_tests "$tests" 'ImageConverterView.*' >/dev/null
fi
ls -l "$out"/*.png
