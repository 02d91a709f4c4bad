#!/usr/bin/env bash
# Takes screenshots of the output windows under a virtual display:
#   email-attachment-options.png  the e-mail window's first tab: the grid of
#                                 clients' sites, a site's plans with ticks
#   email-details.png             its second tab: recipients, subject, text
#   email-spelling-dialog.png     the spelling dialog on an unknown word
#   colour-fill.png               the colouring window after two floods and
#                                 a pen line made with the mouse
#   email-desktop.png             the desktop program's e-mail window, opened
#                                 from the File menu, a site picked and a plan ticked
#   email-desktop-spelling.png    its spelling check on a typed text
# The windows are built and driven by the output windows' view tests, which
# save each window when TESSALY_OUTPUT_SCREENSHOTS names a folder; then the
# desktop program itself shows the e-mail window, reached by its menu with
# xdotool.
# Usage: scripts/screenshot-output.sh [build-dir] [output-dir]
source "$(dirname "$0")/screenshot-setup.sh"
tests="$PWD/$build/tests/ui/ui_tests"
need_programs "no test program at $tests: build ui_tests first" "$tests"
TESSALY_OUTPUT_SCREENSHOTS="$out" view_tests "$tests" 'OutputWindowsView.*'

exe="$PWD/$build/app/tessaly/tessaly"
driver="$PWD/$build/app/script/tessaly-script"
need_programs "build tessaly and tessaly-script for email-desktop.png" "$exe" "$driver"
temp_home
"$exe" --install --home "$home"
# Clients, sites and plans, made as a user of the database would.
"$driver" --home "$home" - >/dev/null <<'SETUP'
start
sql "INSERT INTO Clients (Client, Contact, Email) VALUES ('Hartley Homes', 'Ann Hartley', 'ann@hartley.test')"
sql "INSERT INTO Clients (Client, Contact, Email) VALUES ('Kiln Estates', 'Raj Patel', 'raj@kiln.test')"
sql "INSERT INTO Sites (ClientID, Site, Address) VALUES (1, 'Mill', '12 Mill Lane')"
sql "INSERT INTO Sites (ClientID, Site, Address) VALUES (2, 'Kiln', '3 Kiln Road')"
sql "INSERT INTO SitePlans (SiteID, PlanDescription, ColourOutputCreated) VALUES (1, 'Ground Floor', -1)"
sql "INSERT INTO SitePlans (SiteID, PlanDescription, ColourOutputCreated) VALUES (1, 'First Floor', 0)"
close frmMain
SETUP
cat >"$home/shoot.sh" <<'SHOOT'
set -euo pipefail
exe=$1 home=$2 out=$3
source "$4"
launch_program "$exe" "$home"
# File > Project Files > Email EMF Files To Client, by the keyboard.
xdotool key alt+f
sleep 0.5
xdotool key Down Right
sleep 0.5
xdotool key Down Down Down Return
email=$(xdotool search --sync --onlyvisible --name '^E-Mail Drawings To A Client$' | head -1)
sleep 1
eval "$(xdotool getwindowgeometry --shell "$email")"
# The grid's first row, then the first plan's tick box.
xdotool mousemove $((X + 60)) $((Y + 130)) click 1
sleep 0.5
xdotool mousemove $((X + 478)) $((Y + 118)) click 1
sleep 1
import -window root "$out/email-desktop.png"
# The second tab, a text with a slip, and the spelling check.
xdotool mousemove $((X + 173)) $((Y + 90)) click 1
sleep 0.5
xdotool mousemove $((X + 100)) $((Y + 230)) click 1
xdotool type --delay 20 "Dear Ann, plese find the plans attached."
xdotool mousemove $((X + 548)) $((Y + 489)) click 1
xdotool search --sync --onlyvisible --name '^Spell Check$' >/dev/null
sleep 1
import -window root "$out/email-desktop-spelling.png"
xdotool key Return
sleep 0.5
SHOOT
run_steps "$home/shoot.sh"
ls -l "$out"/email-*.png "$out"/colour-fill.png
