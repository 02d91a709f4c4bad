#!/usr/bin/env bash
# Takes screenshots of the desktop program's planner and cost tab under a
# virtual display, driven by the mouse and keyboard as a user would:
#   projects-desktop-booking.png  a booking drawn with the mouse on the first
#                                 time line, the booking panel open with its
#                                 text typed
#   projects-desktop-tip.png      the booking saved, and its tip under the pointer
#   projects-desktop-report.png   the cost report opened by "Print Costs"
# The home is filled by the script driver: a client, a site with three time
# lines and two cost lines. The program runs in the en_GB locale.
# Usage: scripts/screenshot-planner-desktop.sh [build-dir] [output-dir]
source "$(dirname "$0")/screenshot-setup.sh"
exe="$PWD/$build/app/tessaly/tessaly"
driver="$PWD/$build/app/script/tessaly-script"
need_programs "build tessaly and tessaly-script first" "$exe" "$driver"
temp_home
"$driver" --home "$home" - >/dev/null <<'SCRIPT'
install
start
sql "INSERT INTO Clients (Client, Address, PostCode) VALUES ('Harbour Homes Ltd', '12 Quay Street', 'TR1 2AB')"
sql "INSERT INTO Sites (ClientID, Site, Address) VALUES (1, 'Barn Conversion', 'Old Barn')"
sql "INSERT INTO ProjectTimeLines (SiteID, TimeLineDesc) VALUES (1, 'Footings')"
sql "INSERT INTO ProjectTimeLines (SiteID, TimeLineDesc) VALUES (1, 'Walls')"
sql "INSERT INTO ProjectTimeLines (SiteID, TimeLineDesc) VALUES (1, 'Roof')"
sql "INSERT INTO ProjectCosts (SiteID, ProjectItem, ProjectTimeLine, Cost, ActualCost) VALUES (1, 'Groundworks', 'Footings', 4200.5, 4385.25)"
sql "INSERT INTO ProjectCosts (SiteID, ProjectItem, ProjectTimeLine, Cost) VALUES (1, 'Bricks', 'Walls', 2300.5)"
close frmMain
SCRIPT
cat >"$home/shoot.sh" <<'SHOOT'
set -euo pipefail
exe=$1 home=$2 out=$3
source "$4"
start_program "$exe" "$home"
open_project_manager
# The client from the combo, then tab 3.
choose_first_client
xdotool mousemove $((X + 283)) $((Y + 104)) click 1
sleep 1
# A booking dragged over five days of the first time line, its text typed.
row=$((Y + 209))
xdotool mousemove $((X + 300)) $row mousedown 1 mousemove $((X + 340)) $row \
  mousemove $((X + 380)) $row mousemove $((X + 420)) $row mouseup 1
sleep 1
xdotool mousemove $((X + 560)) $((Y + 297)) click 1
xdotool type "Dig footings"
sleep 0.3
import -window "$manager" "$out/projects-desktop-booking.png"
# OK, then the pointer on the saved bar.
xdotool mousemove $((X + 611)) $((Y + 469)) click 1
sleep 1
xdotool mousemove $((X + 360)) $((Y + 208))
sleep 0.3
xdotool mousemove $((X + 364)) $((Y + 209))
sleep 1.5
import -window "$manager" "$out/projects-desktop-tip.png"
# Tab 4, then "Print Costs".
xdotool mousemove $((X + 440)) $((Y + 104)) click 1
sleep 1
xdotool mousemove $((X + 640)) $((Y + 427)) click 1
sleep 2
import -window root -crop 900x760+0+0 "$out/projects-desktop-report.png"
SHOOT
run_steps "$home/shoot.sh"
ls -l "$out"/projects-desktop-booking.png "$out"/projects-desktop-tip.png "$out"/projects-desktop-report.png
